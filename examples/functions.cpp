// Every function of the library, as the header shows them: functions, in a folder with a GIF
// picture holiday.gif. Valid from C++98 on.
#include <typescout/typescout.h>

#include <cstdio>

static void Recognise() {
  int filter = TypeScoutFile(L"holiday.gif");
  if (filter == 0x0305) std::puts("a GIF picture");
  if (filter == 0) std::puts("not recognised, or not readable");
  if (filter != 0) std::printf("0x%04X\n", static_cast<unsigned>(filter));
}

static void CheckIdentifiers() {
  int ids[] = {0x0322, 0x0305};
  int filter = CheckFiltersFromIDList(L"holiday.gif", ids, 2, 0, 0, 0);
  if (filter == 0x0305) std::puts("a GIF picture, and no PNG picture");
  std::printf("registry rows %d and %d\n", ids[0], ids[1]);  // no identifiers any more
}

static void CheckRows() {
  wchar_t path[] = L"holiday.gif";
  int rows[] = {40, 4};  // PNG, GIF
  int filter = CheckFiltersFromList(path, rows, 2, 0, 0, 0);
  if (filter == 0x0305) std::puts("a GIF picture, and no PNG picture");
}

static void CheckOne() {
  const wchar_t* path = L"holiday.gif";
  if (CheckOneFilter(path, 0x0305, 0)) std::puts("the GIF filter accepts it");
  if (!CheckOneFilter(path, 0x0322, 0)) std::puts("the PNG filter does not");
  if (!CheckOneFilter(path, 0x0535, 0x0535)) std::puts("nor does the PDF filter");
}

static void EveryRow() {
  wchar_t path[] = L"holiday.gif";
  for (int row = 0; row < GetNumTypeScoutProcs(); ++row) {
    if (CheckFiltersFromList(path, &row, 1, 0, 0, 0)) std::printf("row %d accepts it\n", row);
  }
}

static void ValidIdentifiers() {
  if (CheckValidFilterID(0x0305)) std::puts("GIF: a row has it");
  if (CheckValidFilterID(0x0706)) std::puts("the drawing object: valid, though without a row");
  if (!CheckValidFilterID(0)) std::puts("0 is no filter");
  if (!CheckValidFilterID(-1)) std::puts("nor is a negative number");
}

int main() {
  Recognise();
  CheckIdentifiers();
  CheckRows();
  CheckOne();
  EveryRow();
  ValidIdentifiers();
}
