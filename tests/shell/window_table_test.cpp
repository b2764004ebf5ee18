#include <gmock/gmock.h>

#include <QAction>
#include <QGroupBox>
#include <QMenu>

#include "shell/form1.h"
#include "shell/form2.h"
#include "shell/form3.h"
#include "shell/form4.h"
#include "shell/form5.h"
#include "shell/form6.h"
#include "shell/form7.h"
#include "shell/shell_scene.h"

namespace corvenna {
namespace {

/// Where the operator reads a control, without the marks of mnemonics.
QString TextOf(const QObject& control) {
    QString text;
    if (const auto* label = qobject_cast<const QLabel*>(&control)) text = label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) text = button->text();
    if (const auto* frame = qobject_cast<const QGroupBox*>(&control)) text = frame->title();
    if (const auto* line = qobject_cast<const QLineEdit*>(&control)) text = line->text();
    if (const auto* box = qobject_cast<const QComboBox*>(&control); box != nullptr && box->isEditable()) {
        text = box->lineEdit()->placeholderText();
    }
    if (const auto* menu = qobject_cast<const QMenu*>(&control)) text = menu->title();
    if (const auto* item = qobject_cast<const QAction*>(&control)) text = item->text();
    return text.remove('&');
}

struct Row {
    const char* Control;
    const char* Text = "";
    int Interval = -1;  ///< of a timer, milliseconds
    bool Runs = false;
};

void ExpectTable(const Window& window, const char* name, const char* caption, const std::vector<Row>& rows) {
    EXPECT_EQ(window.objectName(), name);
    EXPECT_EQ(window.windowTitle(), caption);
    for (const Row& row : rows) {
        const auto found = window.findChildren<QObject*>(row.Control);
        ASSERT_EQ(found.size(), 1) << name << ' ' << row.Control;
        EXPECT_EQ(TextOf(*found[0]), row.Text) << name << ' ' << row.Control;
        if (row.Interval < 0) continue;
        const auto* const timer = qobject_cast<const QTimer*>(found[0]);
        ASSERT_NE(timer, nullptr) << name << ' ' << row.Control;
        EXPECT_EQ(timer->interval(), row.Interval) << name << ' ' << row.Control;
        EXPECT_EQ(timer->isActive(), row.Runs) << name << ' ' << row.Control;
    }
}

/// A name that a screen reader can read out, for all that can be operated.
void ExpectNames(const Window& window) {
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        const bool operated = control->focusPolicy() != Qt::NoFocus && control->parent() != nullptr &&
                              !control->objectName().isEmpty() && !control->objectName().startsWith("qt_");
        if (!operated) continue;
        EXPECT_FALSE(control->accessibleName().isEmpty())
            << window.objectName().toStdString() << ' ' << control->objectName().toStdString();
    }
}

/// What the windows are built on.
struct Ground : OperatorDesk {
    void ShowBox(BoxIcon, std::string_view) override {}
    HandlerGate Gate;
    ProgramFields Program;
    Station TheStation;
    SessionObjects Objects;
};

TEST(WindowTable, Form1) {
    Ground ground;
    const Form1 form(ground.Gate, [] {});
    ExpectTable(form, "Form1", "Corvenna v1.3",
                {{"Timer1", "", 3000, true}, {"Label1", "CORVENNA VERSION 1.3"}});
}

TEST(WindowTable, Form2) {
    Ground ground;
    const Form2 form(ground.Gate, ground.Program, ground.TheStation, {});
    ExpectTable(form, "Form2", "Settings",
                {{"Frame1", "All airports of the FS world"},
                 {"Combo1", "Type and select an airport"},
                 {"Command1", "Next"},
                 {"Command2", "Exit"},
                 {"Label1", "Status:"},
                 {"Label2", "Done!"},
                 {"Label3", "Scanning:"},
                 {"Text1"},
                 {"ProgressBar1"},
                 {"Drive1"},
                 {"Scan_Bgl", "", 5},
                 {"Wait_for_Close", "", 3000},
                 {"abot", "About"},
                 {"abot1", "About Corvenna v1.3"}});
    ExpectNames(form);
}

TEST(WindowTable, Form3) {
    Ground ground;
    const Form3 form(ground.Gate, ground.TheStation, ground.Objects, ground, {});
    ExpectTable(form, "Form3", "Connecting to FS Multiplayer Session",
                {{"Frame1", "Multiplayer Settings"},
                 {"Label2", "Callsign:"},
                 {"Text2", "-None-"},
                 {"Label1", "Type of Connections:"},
                 {"List1"},
                 {"Label3", "Type of Connection:"},
                 {"Command1", "Search for FS Multiplayer Sessions"},
                 {"Frame2", "List of FS Multiplayer Sessions"},
                 {"Label4", "Avaible Sessions:"},
                 {"List2"},
                 {"Command2", "Join Session"},
                 {"Command3", "Close"},
                 {"Label5", "Status:"},
                 {"Label6", "Disconnected"},
                 {"Timer1", "", 1000},
                 {"abot", "About"},
                 {"abot1", "About Corvenna v1.3"}});
    ExpectNames(form);
}

TEST(WindowTable, Form4) {
    Ground ground;
    const Form4 form(ground.Gate, ground.TheStation, ground.Objects, ground, {});
    ExpectTable(form, "Form4", "ATC Station Window",
                {{"Command2", "Start Monitoring Traffic"},
                 {"Command1", "Stop Monitoring Traffic"},
                 {"Command3", "Close the ATC Station"},
                 {"Label1", "NOT MONITORING TRAFFIC"},
                 {"Shape1"},
                 {"Shape2"},
                 {"Shape3"},
                 {"ATC_Timer", "", 1000},
                 {"Connection_Timer", "", 100},
                 {"Refresh_Players", "", 30000}});
    ExpectNames(form);
}

TEST(WindowTable, Form5) {
    Ground ground;
    const Form5 form(ground.Gate);
    ExpectTable(form, "Form5", "About Corvenna v1.3",
                {{"Label1", "CORVENNA VERSION 1.3"}, {"Frame1", "Credits"}, {"Command1", "OK"}});
    ExpectNames(form);
}

TEST(WindowTable, Form6) {
    Ground ground;
    const Form6 form(ground.Gate);
    ExpectTable(form, "Form6", "Processing please wait...",
                {{"Label1", "Scanning:"}, {"Text1", "Done"}, {"ProgressBar1"}});
}

TEST(WindowTable, Form7) {
    Ground ground;
    const Form7 form(ground.Gate, ground.Program, ground, {});
    ExpectTable(form, "Form7", "Creating Configuration File",
                {{"Command1", "Create Configuration File"},
                 {"Frame1", "Getting FS2002 Path"},
                 {"Drive1"},
                 {"Dir1"},
                 {"Text1", "-none-"},
                 {"Label1", "Current Path:"},
                 {"Label2", "Example:"},
                 {"Label3", "C:\\Program Files\\Microsoft Games\\FS2002"},
                 {"abot", "About"},
                 {"abot1", "About Corvenna v1.3"}});
    ExpectNames(form);
}

}  // namespace
}  // namespace corvenna
