@echo off
rem Hosts a session on this computer, flies pilots in it, and opens Corvenna for you.
title Corvenna: a practice session
pushd "%~dp0"
echo A practice session on this computer. Corvenna opens at once:
echo.
echo   1. Choose an airport and press Next. The pilots come there.
echo   2. Choose "Practice Session On This Computer", search, select the session, join.
echo   3. Press "Start Monitoring Traffic".
echo.
echo It ends with Corvenna, or with Ctrl-C here. To be one of the pilots, start pilot.cmd.
echo.
corvenna-practice.exe run --desktop --app practice
pause
popd
