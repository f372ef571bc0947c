#include "framework/Listbox.h"

#include <gtest/gtest.h>

#include <random>

#include "framework/Text.h"

namespace {

class ListboxTest : public testing::Test {
 protected:
  ListboxTest() {
    list_->ColumnCount = 2;
    list_->Change = [this](const auto& list) { changes_.push_back(list->ListIndex()); };
  }

  void Fill(int rows) {
    for (int row = 0; row < rows; ++row) list_->AddRow(Str(row));
  }

  Ref<Listbox> list_ = New<Listbox>();
  std::vector<int> changes_;  // what was selected at each change
};

TEST_F(ListboxTest, OutOfRangeReadsNothingAndWritesNothing) {
  Fill(2);
  for (const auto& [row, column] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 2}, {INT_MIN, INT_MAX}}) {
    list_->Cell(row, column, "x");
    list_->CellBold(row, column, true);
    list_->CellItalic(row, column, true);
    list_->CellAlignment(row, column, 3);
    EXPECT_EQ(list_->Cell(row, column).Utf8(), "");
    EXPECT_FALSE(list_->CellBold(row, column) || list_->CellItalic(row, column));
    EXPECT_EQ(list_->CellAlignment(row, column), 0);
  }
  for (const int row : {-1, 2, INT_MIN, INT_MAX}) list_->RemoveRow(row);
  EXPECT_EQ(list_->ListCount(), 2);
  EXPECT_EQ(list_->Cell(0, 0).Utf8() + list_->Cell(1, 0).Utf8(), "01");
}

TEST_F(ListboxTest, SelectionRaisesChangeOnceAndFollowsItsRow) {
  Fill(5);
  for (const int row : {3, 3, 9, 3}) list_->ListIndex(row);
  EXPECT_EQ(changes_, (std::vector{3, -1, 3}));
  list_->RemoveRow(0);  // the same row, at another place: no change of the selection
  list_->RemoveRow(3);
  EXPECT_EQ(list_->ListIndex(), 2);
  EXPECT_EQ(changes_.size(), 3u);
  list_->TakeStale();
  list_->RemoveRow(2);
  list_->ListIndex(0);
  EXPECT_TRUE(list_->TakeStale());
  list_->Change = [this](const auto& list) {
    changes_.push_back(list->ListIndex());
    EXPECT_EQ(list->ListCount(), 0);
  };
  list_->DeleteAllRows();
  EXPECT_EQ(changes_, (std::vector{3, -1, 3, -1, 0, -1}));
}

TEST_F(ListboxTest, StaysInStepWithAPlainReference) {
  std::mt19937 random(7);
  std::vector<std::string> reference;
  std::vector<std::string> shown;  // a copy kept up by what the list says has changed
  const auto below = [&](std::size_t limit) { return static_cast<int>(random() % limit); };
  for (int step = 0; step < 5000; ++step) {
    const int choice = below(100);
    if (choice < 45 || reference.empty()) {
      reference.push_back(std::to_string(step));
      list_->AddRow(reference.back());
    } else if (choice < 75) {
      const int row = below(reference.size());
      reference.erase(reference.begin() + row);
      list_->RemoveRow(row);
    } else if (choice < 99) {
      const int row = below(reference.size());
      reference[static_cast<std::size_t>(row)] += "'";
      list_->Cell(row, 0, reference[static_cast<std::size_t>(row)]);
    } else {  // as the filter of a scan does
      for (int row = list_->ListCount() - 1; row >= 0; --row) {
        if (below(3) == 0) continue;
        list_->RemoveRow(row);
        reference.erase(reference.begin() + row);
      }
    }
    const auto cell = [&](std::size_t row) { return list_->Cell(static_cast<int>(row), 0).Utf8(); };
    ASSERT_TRUE(list_->TakeStale() || choice == 99);
    ASSERT_EQ(list_->ListCount(), static_cast<int>(reference.size()));
    for (std::size_t row = 0; row < reference.size(); ++row) ASSERT_EQ(cell(row), reference[row]);
    if (below(3) != 0) continue;
    const auto changes = list_->TakeChanges();
    shown.resize(reference.size());
    for (std::size_t row = 0; row < shown.size(); ++row)
      if (changes.rowsRemoved ||
          (static_cast<int>(row) >= changes.firstStale && static_cast<int>(row) < changes.endStale))
        shown[row] = cell(row);
    ASSERT_EQ(shown, reference);
  }
}

}  // namespace
