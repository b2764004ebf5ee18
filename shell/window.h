#pragma once

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <functional>
#include <string_view>

#include "shell/handler_gate.h"

namespace corvenna {

/// What the windows have in common: a name, a caption, handlers that go through the gate, and a status line.
/// A window that is closed is deleted, behind the handler that closed it.
class Window : public QMainWindow {
    Q_OBJECT

  public:
    /// Takes the window away for the program; its own close box is another matter. To be called in a handler.
    void Depart();

    /// Paints it before the handler in hand has ended.
    void PaintNow();

    /// A line below the controls that tells the operator what he can't see elsewhere. The tip tells more.
    void Tell(const QString& line, const QString& tip = {});

  protected:
    Window(HandlerGate& gate, const char* objectName, const QString& caption);

    HandlerGate& Gate() { return gate_; }

    /// Puts the controls into the window, with a status line of so many lines below them; 0: none.
    void SetControls(QLayout* controls, int statusLines);

    /// The About menu; it does not block the window.
    void AddAboutMenu(std::function<void()> showAbout);

    /// Runs a handler when a button is pressed.
    void OnClick(QPushButton* button, std::string_view name, std::function<void()> handler);

    /// What the window's own close box does, before the window goes.
    virtual void OnCloseBox() {}

    void closeEvent(QCloseEvent* event) override;

  private:
    HandlerGate& gate_;
    QLabel* statusLine_ = nullptr;
    bool departs_ = false;
};

// Controls, under the names by which they are known.

QLabel* NewLabel(const char* objectName, const QString& text);
QPushButton* NewButton(const char* objectName, const QString& caption);
QGroupBox* NewFrame(const char* objectName, const QString& caption);

/// A label whose mnemonic leads to a control, which gets the label's text as its accessible name.
QLabel* NewLabelFor(QWidget* control, const char* objectName, const QString& text);

}  // namespace corvenna
