#include "shell/form5.h"

#include <QShortcut>
#include <QVBoxLayout>

#include "shell/picture.h"

namespace corvenna {

namespace {

constexpr const char* Purpose =
    "Corvenna is an automatic air traffic controller for multiplayer sessions of Microsoft Flight Simulator "
    "2002. It joins a session as a participant who never flies, and guides each pilot in the text chat: on "
    "the ground, in the pattern, under way and back to the gate. Pilots answer with a digit.";

constexpr const char* Credits =
    "Program: Dravik\n"
    "Magnetic field: the International Geomagnetic Reference Field\n"
    "Terrain: elevation grids and lists of summits in the public domain\n"
    "Windows: the Qt toolkit";

constexpr int LettersSeen = 72;

/// A text of several lines, whole even where the screen has little room for the window.
QLabel* NewParagraph(const char* objectName, const char* text) {
    QLabel* const label = NewLabel(objectName, text);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * LettersSeen);
    label->setMinimumHeight(label->heightForWidth(label->minimumWidth()));
    return label;
}

}  // namespace

Form5::Form5(HandlerGate& gate) : Window(gate, "Form5", "About Corvenna v1.3") {
    auto* const picture = new Picture;
    picture->setObjectName("Picture1");
    QLabel* const label1 = NewLabel("Label1", "CORVENNA VERSION 1.3");
    PutTitleOnPicture(*label1, 1.3);
    auto* const title = new QVBoxLayout(picture);
    title->setContentsMargins({});
    title->addStretch();
    title->addWidget(label1);

    QGroupBox* const frame1 = NewFrame("Frame1", "Credits");
    (new QVBoxLayout(frame1))->addWidget(NewParagraph("Label3", Credits));

    QPushButton* const command1 = NewButton("Command1", "&OK");
    command1->setDefault(true);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, command1, &QPushButton::click);
    OnClick(command1, "The about window", [this] { Depart(); });

    auto* const controls = new QVBoxLayout;
    controls->addWidget(picture, 1);
    controls->addWidget(NewParagraph("Label2", Purpose));
    controls->addWidget(frame1);
    controls->addWidget(command1, 0, Qt::AlignRight);
    SetControls(controls, 0);
    command1->setFocus();
}

}  // namespace corvenna
