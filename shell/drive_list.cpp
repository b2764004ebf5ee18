#include "shell/drive_list.h"

#include <QDir>
#include <QStorageInfo>

namespace corvenna {

namespace {

/// Volumes that a person has put there, not those that the system is made of.
bool IsForPeople(const QStorageInfo& volume) {
    const QString root = volume.rootPath();
    return root.startsWith("/media/") || root.startsWith("/mnt/") || root.startsWith("/run/media/") ||
           root.startsWith("/Volumes/");
}

QString DriveLetter(const QString& root) { return root.left(2).toLower(); }

}  // namespace

DriveList::DriveList(QWidget* parent) : QComboBox(parent) {
    setAccessibleName(tr("Drive"));
    for (const QFileInfo& drive : QDir::drives()) {
        const QString root = drive.absoluteFilePath();
        const QString volume = QStorageInfo(root).name();
        if (root == "/") {
            addItem(tr("This computer: /"), root);
        } else {
            addItem(volume.isEmpty() ? DriveLetter(root) : DriveLetter(root) + " [" + volume + "]", root);
        }
    }
    if (QDir::rootPath() != "/") return;
    addItem(tr("Your folder: %1").arg(QDir::homePath()), QDir::homePath());
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (IsForPeople(volume)) addItem(volume.displayName(), volume.rootPath());
    }
}

}  // namespace corvenna
