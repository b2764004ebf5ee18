#include "shell/window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMenuBar>
#include <QVBoxLayout>
#include <utility>

namespace corvenna {

namespace {

QString WithoutMnemonic(QString text) { return text.remove('&'); }

}  // namespace

Window::Window(HandlerGate& gate, const char* objectName, const QString& caption) : gate_(gate) {
    setObjectName(objectName);
    setWindowTitle(caption);
}

void Window::Depart() {
    if (departs_) return;
    departs_ = true;
    hide();
    connect(&gate_, &HandlerGate::Freed, this, &QObject::deleteLater);
}

/// A close box that is pressed during a handler acts when the handler has ended.
void Window::closeEvent(QCloseEvent* event) {
    if (departs_) return;  // pressed once more before the window was gone
    if (gate_.Busy()) {
        event->ignore();
        connect(&gate_, &HandlerGate::Freed, this, &QWidget::close,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
        return;
    }
    event->accept();
    gate_.Run("Closing the window", [this] {
        OnCloseBox();
        Depart();
    });
}

void Window::PaintNow() {
    repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void Window::Tell(const QString& line, const QString& tip) {
    statusLine_->setText(line);
    statusLine_->setToolTip(tip);
}

void Window::SetControls(QLayout* controls, int statusLines) {
    auto* const centre = new QWidget;
    auto* const column = new QVBoxLayout(centre);
    column->addLayout(controls);
    if (statusLines > 0) {
        statusLine_ = NewLabel("StatusLine", "");
        statusLine_->setWordWrap(true);
        statusLine_->setAlignment(Qt::AlignLeading | Qt::AlignTop);
        statusLine_->setMinimumHeight(statusLine_->fontMetrics().lineSpacing() * statusLines);
        statusLine_->setAccessibleName(tr("Notes"));
        column->addWidget(statusLine_);
    }
    setCentralWidget(centre);
}

void Window::AddAboutMenu(std::function<void()> showAbout) {
    QMenu* const menu = menuBar()->addMenu("&About");
    menu->setObjectName("abot");
    QAction* const item = menu->addAction("&About Corvenna v1.3");
    item->setObjectName("abot1");
    item->setShortcut(QKeySequence::HelpContents);
    connect(item, &QAction::triggered, this,
            [this, showAbout = std::move(showAbout)] { gate_.Run("The about window", showAbout); });
}

void Window::OnClick(QPushButton* button, std::string_view name, std::function<void()> handler) {
    connect(button, &QPushButton::clicked, this,
            [this, name, handler = std::move(handler)] { gate_.Run(name, handler); });
}

// ---- Controls

QLabel* NewLabel(const char* objectName, const QString& text) {
    auto* const label = new QLabel(text);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QPushButton* NewButton(const char* objectName, const QString& caption) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(objectName);
    button->setAccessibleName(WithoutMnemonic(caption));
    button->setAutoDefault(true);
    return button;
}

QGroupBox* NewFrame(const char* objectName, const QString& caption) {
    auto* const frame = new QGroupBox(caption);
    frame->setObjectName(objectName);
    return frame;
}

QLabel* NewLabelFor(QWidget* control, const char* objectName, const QString& text) {
    QLabel* const label = NewLabel(objectName, text);
    label->setBuddy(control);
    control->setAccessibleName(WithoutMnemonic(text));
    return label;
}

}  // namespace corvenna
