#include "shell/airport_box.h"

#include <QCollator>
#include <QCompleter>
#include <QLineEdit>
#include <QListView>
#include <algorithm>

#include "shell/screen_text.h"

namespace corvenna {

namespace {

constexpr int RowsOffered = 12;
constexpr int LettersSeen = 40;

QStringList Alphabetical(const QStringList& labels) {
    QCollator collator{QLocale(QLocale::English)};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, QString>> keyed;
    keyed.reserve(static_cast<std::size_t>(labels.size()));
    for (const QString& label : labels) keyed.emplace_back(collator.sortKey(label), label);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList sorted;
    sorted.reserve(labels.size());
    for (auto& [key, label] : keyed) sorted.append(std::move(label));
    return sorted;
}

/// Views that do not measure tens of thousands of rows.
void SetUniform(QAbstractItemView* view) {
    if (auto* const list = qobject_cast<QListView*>(view)) list->setUniformItemSizes(true);
}

}  // namespace

AirportBox::AirportBox() {
    setEditable(true);
    setInsertPolicy(NoInsert);
    setModel(&labels_);
    setMaxVisibleItems(RowsOffered);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(LettersSeen);
    SetUniform(view());
    setAccessibleName("Type and select an airport");
    lineEdit()->setPlaceholderText("Type and select an airport");
    lineEdit()->setClearButtonEnabled(true);

    auto* const offers = new QCompleter(&labels_, this);
    offers->setFilterMode(Qt::MatchContains);
    offers->setCaseSensitivity(Qt::CaseInsensitive);
    offers->setCompletionMode(QCompleter::PopupCompletion);
    offers->setMaxVisibleItems(RowsOffered);
    SetUniform(offers->popup());
    setCompleter(offers);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &AirportBox::TakeFirstMatch);
}

void AirportBox::Fill(const std::vector<std::string>& labels) {
    QStringList shown;
    shown.reserve(static_cast<qsizetype>(labels.size()));
    texts_.clear();
    texts_.reserve(static_cast<qsizetype>(labels.size()));
    for (const std::string& label : labels) {
        shown.append(ToScreen(label));
        texts_.insert(shown.back(), label);
    }
    labels_.setStringList(Alphabetical(shown));
    setCurrentIndex(-1);
    clearEditText();
}

std::optional<std::string> AirportBox::SelectedLabel() const {
    const auto found = texts_.find(currentText());
    if (found == texts_.end()) return std::nullopt;
    return *found;
}

void AirportBox::TakeFirstMatch() {
    if (SelectedLabel() || currentText().isEmpty()) return;
    completer()->setCompletionPrefix(currentText());
    if (completer()->setCurrentRow(0)) setEditText(completer()->currentCompletion());
}

}  // namespace corvenna
