#include "disktool/RowStyle.h"

namespace {

constexpr int kColumns = 4;

}  // namespace

void StyleAsMounted(Listbox& table, int row) {
  for (int column = 0; column < kColumns; ++column) table.CellBold(row, column, true);
  for (int column = 0; column < kColumns; ++column) table.CellItalic(row, column, false);
}

void StyleAsNotMounted(Listbox& table, int row) {
  for (int column = 0; column < kColumns; ++column) table.CellBold(row, column, false);
  for (int column = 0; column < kColumns; ++column) table.CellItalic(row, column, true);
}
