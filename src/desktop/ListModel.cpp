#include "desktop/ListModel.h"

#include <algorithm>

#include "desktop/shown_text.h"
#include "runtime/Listbox.h"

bool ListModel::catchUp() {
  if (!list_) return false;
  const int rows = static_cast<int>(list_->ListCount());
  const int kept = std::min(rows, rows_);
  const bool renewed = list_->Revision() != revision_;
  revision_ = list_->Revision();
  if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
  if (kept > 0) emit dataChanged(index(renewed ? 0 : kept - 1, 0), index(kept - 1, columnCount() - 1));
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  }
  return renewed;
}

int ListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || !list_ ? 0 : list_->Columns();
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  const bool wanted = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
  if (!wanted || !list_ || index.row() >= list_->ListCount()) return {};
  return shownText(list_->Cell(index.row(), index.column()));
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || !list_) return {};
  const std::vector<std::string>& headings = list_->Layout().headings;
  const auto at = static_cast<std::size_t>(section);
  return at < headings.size() ? shownText(headings[at]) : QString();
}
