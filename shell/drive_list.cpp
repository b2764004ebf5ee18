#include "shell/drive_list.h"

#include <QDir>
#include <QStorageInfo>

#include "shell/screen_text.h"
#include "world/drives.h"

namespace corvenna {

namespace {

/// Volumes that a person has put there, not those that the system is made of.
bool IsForPeople(const QStorageInfo& volume) {
    const QString root = volume.rootPath();
    return root.startsWith("/media/") || root.startsWith("/mnt/") || root.startsWith("/run/media/") ||
           root.startsWith("/Volumes/");
}

}  // namespace

DriveList::DriveList(QWidget* parent) : QComboBox(parent) {
    setAccessibleName(tr("Drive"));
    for (const std::string& drive : ListDrives()) {
        const QString name = ToScreen(drive);
        addItem(name, name.left(2).toUpper() + '/');
    }
    if (QDir::rootPath() != "/") return;
    addItem(tr("This computer: /"), "/");
    addItem(tr("Your folder: %1").arg(QDir::homePath()), QDir::homePath());
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (IsForPeople(volume)) addItem(volume.displayName(), volume.rootPath());
    }
}

void DriveList::ShowDriveOf(const QString& path) {
    for (int i = count() - 1; i >= 0; --i) {
        const QString root = itemData(i).toString();
        if (!path.startsWith(root, Qt::CaseInsensitive)) continue;
        setCurrentIndex(i);
        return;
    }
}

}  // namespace corvenna
