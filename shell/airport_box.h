#pragma once

#include <QComboBox>
#include <QHash>
#include <QStringListModel>
#include <optional>
#include <string>
#include <vector>

namespace corvenna {

/// The list of all airports, in alphabetical order. While one types, it offers those whose labels hold the
/// typed text anywhere; Return takes the first of them. An airport is selected while its whole label stands
/// in the box.
class AirportBox final : public QComboBox {
    Q_OBJECT

  public:
    AirportBox();

    /// The airports' labels, in any order; texts of the program.
    void Fill(const std::vector<std::string>& labels);

    std::optional<std::string> SelectedLabel() const;

  private:
    void TakeFirstMatch();

    QStringListModel labels_;
    QHash<QString, std::string> texts_;  // of the labels as they are on the screen
};

}  // namespace corvenna
