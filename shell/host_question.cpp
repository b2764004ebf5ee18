#include "shell/host_question.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QVBoxLayout>

#include "link/operator_desk.h"
#include "shell/screen_text.h"
#include "shell/window.h"

namespace corvenna {

std::optional<std::string> AskForHost(QWidget* parent) {
    QDialog question(parent);
    question.setObjectName("HostQuestion");
    question.setWindowTitle(ToScreen(ProgramTitle));
    auto* const host = new QLineEdit;
    host->setObjectName("Host");
    host->setPlaceholderText(QObject::tr("the local network"));
    host->setMinimumWidth(host->fontMetrics().averageCharWidth() * 40);
    QLabel* const explanation = NewLabelFor(
        host, "HostLabel", QObject::tr("&Name or address of the computer that hosts the session:"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &question, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &question, &QDialog::reject);
    auto* const column = new QVBoxLayout(&question);
    column->addWidget(explanation);
    column->addWidget(host);
    column->addWidget(NewLabel("HostHint", QObject::tr("Leave it empty to search the local network.")));
    column->addWidget(buttons);
    if (question.exec() != QDialog::Accepted) return std::nullopt;
    return host->text().trimmed().toStdString();
}

}  // namespace corvenna
