// font_sheet_tool_test.cpp: the font's build tool on good and on broken sheets and tables.
#include <gtest/gtest.h>
#include <png.h>

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string contents(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class FontSheetTool : public testing::Test {
protected:
    std::filesystem::path folder;
    std::string table = contents("resources/font/font_metrics.txt");
    std::vector<unsigned char> pixels;
    png_image image = {};
    int status = -1;
    std::string message;

    void SetUp() override {
        std::string pattern = testing::TempDir() + "font_sheet_XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        image.version = PNG_IMAGE_VERSION;
        ASSERT_TRUE(png_image_begin_read_from_file(&image, "resources/font/font_sheet.png"));
        pixels.resize(PNG_IMAGE_SIZE(image));
        ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    unsigned char& pixel(int code, int column, int row) {
        const int x = code % 16 * 20 + column, y = code / 16 * 20 + row;
        return pixels.at(static_cast<size_t>(y) * 320 + static_cast<size_t>(x));
    }
    // Replaces the one line of the table that begins with the text.
    void change_line(const std::string& start, const std::string& line) {
        const size_t at = ("\n" + table).find("\n" + start);
        ASSERT_NE(at, std::string::npos) << start;
        table.replace(at, table.find('\n', at) - at, line);
    }
    void write_sheet() {
        ASSERT_TRUE(png_image_write_to_file(&image, (folder / "sheet.png").c_str(), 0,
                                            pixels.data(), 0, nullptr));
    }
    void convert() {
        if (!exists(folder / "sheet.png"))
            write_sheet();
        std::ofstream(folder / "metrics.txt") << table;
        run("sheet.png metrics.txt records.cpp");
    }
    void run(const std::string& arguments) {
        const std::string command =
            "cd '" + folder.string() + "' && '" FONT_SHEET_TOOL "' " + arguments + " 2>message.txt";
        const int result =
            std::system(command.c_str()); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        status = WEXITSTATUS(result);
        message = contents(folder / "message.txt");
    }
    void expect_refused(const std::string& text) {
        EXPECT_EQ(status, 1);
        EXPECT_NE(message.find(text), std::string::npos) << message;
        EXPECT_FALSE(exists(folder / "records.cpp")) << "wrong records were written";
    }
};

} // namespace

TEST_F(FontSheetTool, WritesRecordsSilently) {
    convert();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(message, "");
    EXPECT_NE(contents(folder / "records.cpp").find("glyph_95[] = {7, 1, 5, 0, 255, 254,"),
              std::string::npos)
        << "negative bearings are stored in two's complement";
}

TEST_F(FontSheetTool, CarriesAnEditedPixelAndAdvanceIntoTheRecords) {
    pixel('.', 5, 13) = 7;
    change_line(" 46 ", "46 2 2 4 1 2");
    convert();
    EXPECT_EQ(status, 0) << message;
    EXPECT_NE(contents(folder / "records.cpp").find("glyph_46[] = {2, 2, 4, 0, 1, 2,7,"),
              std::string::npos);
}

TEST_F(FontSheetTool, IgnoresGuidesThatWereRepainted) {
    for (int code = 0; code < 256; ++code)
        pixel(code, 0, 7) = pixel(code, 7, 0) = 255;
    convert();
    EXPECT_EQ(status, 0) << message;
}

TEST_F(FontSheetTool, RefusesATableWithoutALineForACodePoint) {
    change_line(" 65 ", "# gone");
    convert();
    expect_refused("metrics.txt: code point 65 has no line");
}

TEST_F(FontSheetTool, RefusesASecondLineForACodePoint) {
    table += "65 8 9 7 0 9\n";
    convert();
    expect_refused("code point 65 already has line");
}

TEST_F(FontSheetTool, NamesTheLineThatIsNoGlyph) {
    for (const char* line : {"65 8 9 seven 0 9", "65 8 9 7 0", "65 8 9 7 0 9 1", "A", "65 same"}) {
        SCOPED_TRACE(line);
        table = "# heading\n" + std::string(line) + "\n";
        convert();
        expect_refused("metrics.txt:2: expected six numbers");
    }
}

TEST_F(FontSheetTool, RefusesCodePointsBeyondTheTable) {
    table += "256 8 9 7 0 9\n";
    convert();
    expect_refused("code points go from 0 to 255");
    table = "9-3 same 0\n";
    convert();
    expect_refused("metrics.txt:1: code points go from 0 to 255, the smaller first");
}

TEST_F(FontSheetTool, RefusesAGlyphThatIsTheSameAsABorrowedOne) {
    change_line(" 65 ", "65 same 1");
    convert();
    expect_refused("\"same\" must name a code point with its own glyph");
}

TEST_F(FontSheetTool, RefusesAnAdvanceThatFitsNoByte) {
    change_line(" 65 ", "65 8 9 256 0 9");
    convert();
    expect_refused("the advance must be 0 to 255");
}

TEST_F(FontSheetTool, RefusesABitmapOutsideItsCell) {
    const std::string good = table;
    for (const char* line : {"65 17 9 7 0 9", "65 8 9 7 -4 9", "65 8 9 7 0 15", "65 8 15 7 0 9",
                             "65 8 -9 7 0 9", "65 8 0 7 0 9", "65 99999 9 7 0 9"}) {
        SCOPED_TRACE(line);
        table = good;
        change_line(" 65 ", line);
        convert();
        expect_refused("code point 65: the bitmap lies outside its cell");
    }
}

TEST_F(FontSheetTool, RefusesInkOutsideTheDeclaredBox) {
    pixel('A', 18, 17) = 1;
    convert();
    expect_refused("code point 65: ink outside the declared box, at column 18, row 17 of its cell");
}

TEST_F(FontSheetTool, RefusesInkInACellThatShowsAnother) {
    pixel(130, 10, 10) = 200;
    convert();
    expect_refused("code point 130: ink outside the declared box");
}

TEST_F(FontSheetTool, RefusesASheetOfAnotherSize) {
    image.height = 300;
    convert();
    expect_refused("sheet.png: the sheet must be 320 x 320 pixels");
}

TEST_F(FontSheetTool, RefusesASheetWithColourOrAlpha) {
    for (const png_uint_32 format : {PNG_FORMAT_GA, PNG_FORMAT_RGB, PNG_FORMAT_RGBA}) {
        image.format = format;
        pixels.assign(PNG_IMAGE_SIZE(image), 0);
        write_sheet();
        convert();
        expect_refused("sheet.png: the sheet must be saved as 8-bit greyscale without alpha");
    }
}

TEST_F(FontSheetTool, RefusesASheetThatIsNoPictureOrCutShort) {
    std::ofstream(folder / "sheet.png") << "not a picture";
    convert();
    expect_refused("sheet.png: ");
    write_sheet();
    std::filesystem::resize_file(folder / "sheet.png", 900);
    convert();
    expect_refused("sheet.png: ");
}

TEST_F(FontSheetTool, SaysWhichFileIsMissingOrCannotBeWritten) {
    write_sheet();
    run("sheet.png nowhere.txt records.cpp");
    expect_refused("nowhere.txt: cannot be read");
    std::ofstream(folder / "metrics.txt") << table;
    run("nowhere.png metrics.txt records.cpp");
    expect_refused("nowhere.png: ");
    run("sheet.png metrics.txt no/such/folder.cpp");
    expect_refused("no/such/folder.cpp: cannot be written");
}

TEST_F(FontSheetTool, LeavesNoHalfWrittenRecordsOnAFullDisk) {
    write_sheet();
    std::ofstream(folder / "metrics.txt") << table;
    run("sheet.png metrics.txt /dev/full");
    expect_refused("/dev/full: cannot be written in full");
}

TEST_F(FontSheetTool, ExplainsItsUseWhenCalledWrongly) {
    run("sheet.png");
    EXPECT_EQ(status, 2);
    EXPECT_NE(message.find("usage: font_sheet"), std::string::npos);
}
