#pragma once

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "link/operator_desk.h"
#include "shell/gated_timer.h"
#include "shell/shell.h"
#include "world/temp_folder.h"

namespace corvenna {

/// A message box as the operator saw it.
struct SeenBox {
    BoxIcon Icon;
    std::string Text;
    bool operator==(const SeenBox&) const = default;
};

/// The operator: answers each box at once, and the question for the host.
class Operator final : public QObject {
  public:
    Operator();
    ~Operator() override;

    /// While a box is open, before it is closed.
    std::function<void(QMessageBox&)> WhileOpen;

    /// What he types as the host; nothing: he gives up.
    std::optional<std::string> Host = "";

    std::vector<SeenBox> Boxes;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Answer(QMessageBox& box);
    void Answer(QDialog& question);
};

/// A simulator folder with the practice airports, made once.
const std::string& PracticeSimFolder();

/// The desktop program in a folder of its own, with an operator, on the platform of the application.
class ShellScene {
  public:
    /// The port of the host on this computer, if there is one. The folder holds a small terrain file.
    explicit ShellScene(std::uint16_t hostPort = 0);
    ~ShellScene();
    ShellScene(const ShellScene&) = delete;
    ShellScene& operator=(const ShellScene&) = delete;

    // ---- The program's folder

    /// The files as an earlier run has left them.
    void HasDatabase();

    // ---- The windows

    /// The open windows by their names, in order.
    std::vector<std::string> Open() const;
    bool IsOpen(const char* window) const;

    template <class Control>
    Control& Find(const char* window, const char* name) const {
        auto* const control = FindWindow(window).findChild<Control*>(name);
        if (control == nullptr) throw std::runtime_error(std::string(window) + " has no " + name);
        return *control;
    }
    QLabel& Label(const char* window, const char* name) const { return Find<QLabel>(window, name); }
    QLineEdit& Text(const char* window, const char* name) const { return Find<QLineEdit>(window, name); }
    QListWidget& List(const char* window, const char* name) const { return Find<QListWidget>(window, name); }
    QPushButton& Button(const char* window, const char* name) const {
        return Find<QPushButton>(window, name);
    }
    GatedTimer& Timer(const char* window, const char* name) const { return Find<GatedTimer>(window, name); }
    Window& FindWindow(const char* name) const;

    void Press(const char* window, const char* button) { Button(window, button).click(); }
    void CloseBox(const char* window);  ///< its close box, as the window manager asks for it

    /// A timer's time has come.
    void Fire(const char* window, const char* timer);

    /// Lets events pass until it is so; false when it never was.
    bool Until(const std::function<bool()>& isSo);

    // ---- The way

    void Starts();                    ///< the splash, and what comes after it
    void ChoosesSimFolder();          ///< from the folder chooser to the scan
    void Scans();                     ///< to the airport list
    void Chooses(const char* label);  ///< to the session window
    void SearchesThisComputer();
    void AwaitsAnswer(const std::function<bool()>& isThere);  ///< the host's, to the request to join
    void Joins();                                             ///< to the station window

    /// All of it: first run to the station.
    void OpensStation(const char* label = "Seattle-Tacoma Intl (KSEA)");

    TempFolder App;
    Operator Person;

  private:
    std::filesystem::path before_;

  public:
    Shell Program;
};

}  // namespace corvenna
