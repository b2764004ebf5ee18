@echo off
rem Makes you one of the pilots of the session that practice.cmd hosts.
title Corvenna: you are N1
pushd "%~dp0"
corvenna-practice.exe sit N1 --app practice
pause
popd
