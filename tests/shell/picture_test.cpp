#include "shell/picture.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QIcon>

#include "shell/shell_scene.h"

namespace corvenna {
namespace {

TEST(Picture, KeepsTheShapeOfItsDrawing) {
    const QSize size = Picture().sizeHint();
    EXPECT_NEAR(size.height() / static_cast<double>(size.width()), 2.0 / 3, 0.01);
}

TEST(Picture, TheIconIsThereForEachSizeAtWhichItIsShown) {
    ShellScene scene;
    const QList<QSize> sizes = QApplication::windowIcon().availableSizes();
    for (const int width : {16, 24, 32, 48, 64, 128, 256}) {
        EXPECT_TRUE(sizes.contains(QSize(width, width))) << width;
    }
}

}  // namespace
}  // namespace corvenna
