#include "disktool/RowStyle.h"

namespace {

constexpr int kColumns[] = {0, 1, 2, 3};

}  // namespace

void StyleAsMounted(Listbox& table, int row) {
  for (const int column : kColumns) table.CellBold(row, column, true);
  for (const int column : kColumns) table.CellItalic(row, column, false);
}

void StyleAsNotMounted(Listbox& table, int row) {
  for (const int column : kColumns) table.CellBold(row, column, false);
  for (const int column : kColumns) table.CellItalic(row, column, true);
}
