#include "shell/form6.h"

#include <QProgressBar>
#include <QVBoxLayout>

namespace corvenna {

Form6::Form6(HandlerGate& gate)
    : Window(gate, "Form6", "Processing please wait..."), text1_(new QLineEdit("Done")) {
    text1_->setObjectName("Text1");
    text1_->setReadOnly(true);
    auto* const progressBar1 = new QProgressBar;
    progressBar1->setObjectName("ProgressBar1");
    progressBar1->setAccessibleName(tr("Progress"));
    progressBar1->setRange(0, 0);  // it only tells that something goes on

    auto* const controls = new QVBoxLayout;
    controls->addWidget(NewLabelFor(text1_, "Label1", "Scanning:"));
    controls->addWidget(text1_);
    controls->addWidget(progressBar1);
    SetControls(controls, 0);
    setMinimumWidth(fontMetrics().averageCharWidth() * 50);
}

}  // namespace corvenna
