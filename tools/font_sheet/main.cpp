// font_sheet: turns the font sheet and its metrics table into the records the program carries.
//
//   font_sheet SHEET.png METRICS.txt RECORDS.cpp
//
// Exit status 0 when the records were written, 1 with a message when sheet or table is wrong,
// 2 when it was called wrongly. Records of an earlier run stay as they are on failure.
#include "font_sheet.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: font_sheet SHEET.png METRICS.txt RECORDS.cpp\n", stderr);
        return 2;
    }
    FontSheet sheet;
    if (!read_metrics(argv[2], sheet) || !read_sheet(argv[1], sheet) ||
        !check_and_cut(argv[2], sheet) || !write_records(argv[3], sheet))
        return 1;
    return 0;
}
