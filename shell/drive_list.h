#pragma once

#include <QComboBox>

namespace corvenna {

/// The drives of this computer: those with letters, or where there are none the root, the user's own folder
/// and what is mounted beside them.
class DriveList final : public QComboBox {
    Q_OBJECT

  public:
    explicit DriveList(QWidget* parent = nullptr);

    /// Chooses the drive on which a folder is.
    void ShowDriveOf(const QString& path);

    /// The folder at the root of the chosen drive.
    QString Root() const { return currentData().toString(); }
};

}  // namespace corvenna
