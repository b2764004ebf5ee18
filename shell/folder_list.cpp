#include "shell/folder_list.h"

#include <QDir>
#include <QStyle>

namespace corvenna {

namespace {

constexpr int TargetRole = Qt::UserRole;

}  // namespace

FolderList::FolderList() {
    setUniformItemSizes(true);
    setTabKeyNavigation(false);
    connect(this, &QListWidget::itemActivated, this, &FolderList::Enter);
}

void FolderList::SetPath(const QString& path) {
    const QDir folder(path);
    path_ = QDir::toNativeSeparators(folder.absolutePath());
    clear();
    const auto add = [this](QStyle::StandardPixmap icon, const QString& name, const QString& target) {
        auto* const item = new QListWidgetItem(style()->standardIcon(icon), name, this);
        item->setData(TargetRole, target);
    };
    if (!folder.isRoot()) add(QStyle::SP_FileDialogToParent, "..", QDir::cleanPath(folder.filePath("..")));
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::IgnoreCase)) {
        add(QStyle::SP_DirIcon, name, folder.filePath(name));
    }
    setCurrentRow(0);
    emit PathChanged(path_);
}

void FolderList::Enter(const QListWidgetItem* item) { SetPath(item->data(TargetRole).toString()); }

}  // namespace corvenna
