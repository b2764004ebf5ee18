#include "shell/airport_box.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

namespace corvenna {
namespace {

using testing::ElementsAre;

const std::vector<std::string> Some{"Zell am See (LOWZ)",         "M\xFCnchen (EDDM)", "boeing field (KBFI)",
                                    "Seattle-Tacoma Intl (KSEA)", "Munster (EDLS)",    "Seattle Lake (W55)"};

std::vector<std::string> Rows(const QAbstractItemModel& model) {
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows.push_back(model.index(row, 0).data().toString().toStdString());
    }
    return rows;
}

void Type(AirportBox& box, const QString& text) {
    for (const QChar letter : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
        QApplication::sendEvent(box.lineEdit(), &press);
    }
}

void Return(AirportBox& box) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(box.lineEdit(), &press);
}

TEST(AirportBox, IsInAlphabeticalOrder) {
    AirportBox box;
    box.Fill(Some);
    EXPECT_THAT(Rows(*box.model()),
                ElementsAre("boeing field (KBFI)", "M\u00FCnchen (EDDM)", "Munster (EDLS)",
                            "Seattle Lake (W55)", "Seattle-Tacoma Intl (KSEA)", "Zell am See (LOWZ)"));
    EXPECT_EQ(box.currentText(), "");
    EXPECT_FALSE(box.SelectedLabel());
}

TEST(AirportBox, OffersWhatHoldsTheTypedTextAnywhere) {
    AirportBox box;
    box.Fill(Some);
    box.show();
    Type(box, "ksea");
    EXPECT_THAT(Rows(*box.completer()->completionModel()), ElementsAre("Seattle-Tacoma Intl (KSEA)"));
    box.clearEditText();
    Type(box, "SEATTLE");
    EXPECT_THAT(Rows(*box.completer()->completionModel()),
                ElementsAre("Seattle Lake (W55)", "Seattle-Tacoma Intl (KSEA)"));
    EXPECT_FALSE(box.SelectedLabel());
}

TEST(AirportBox, ReturnTakesTheFirstOffer) {
    AirportBox box;
    box.Fill(Some);
    box.show();
    Type(box, "seattle");
    Return(box);
    EXPECT_EQ(box.SelectedLabel(), "Seattle Lake (W55)");
    Return(box);
    EXPECT_EQ(box.SelectedLabel(), "Seattle Lake (W55)");
}

TEST(AirportBox, ReturnOnWhatNobodyIsCalledSelectsNothing) {
    AirportBox box;
    box.Fill(Some);
    box.show();
    Type(box, "no such airport");
    Return(box);
    EXPECT_FALSE(box.SelectedLabel());
    EXPECT_EQ(box.currentText(), "no such airport");
}

TEST(AirportBox, ALabelIsSelectedByItsBytes) {
    AirportBox box;
    box.Fill(Some);
    box.setCurrentIndex(1);
    EXPECT_EQ(box.SelectedLabel(), "M\xFCnchen (EDDM)");
    box.setEditText("M\u00FCnchen (EDDM");
    EXPECT_FALSE(box.SelectedLabel());
}

TEST(AirportBox, AnEmptyDatabaseHasNothingToSelect) {
    AirportBox box;
    box.Fill({});
    Return(box);
    EXPECT_FALSE(box.SelectedLabel());
}

}  // namespace
}  // namespace corvenna
