#pragma once

#include <QListWidget>

namespace corvenna {

/// A folder and those within it. A folder is entered by Return or a double click, left by the first entry.
class FolderList final : public QListWidget {
    Q_OBJECT

  public:
    FolderList();

    QString Path() const { return path_; }

    void SetPath(const QString& path);

  signals:
    void PathChanged(const QString& path);

  private:
    void Enter(const QListWidgetItem* item);

    QString path_;
};

}  // namespace corvenna
