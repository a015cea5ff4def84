#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableCells.h"

namespace Corvel::AutoCli {
namespace {

TEST(TableCells, GivesBackCellsOfEverySize) {
    TableCells cells;
    std::vector<std::string> texts;
    for (std::size_t size = 0; size < 300; ++size) {
        texts.emplace_back(size, static_cast<char>('a' + size % 26));
    }
    texts.emplace_back(100000, '#');
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(texts[i].size(), cells.Add(texts[i], i % 3 == 0));
    }
    TableCells::Reader reader(cells);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const TableCell cell = reader.Next();
        EXPECT_EQ(texts[i], cell.text);
        EXPECT_EQ(i % 3 == 0, cell.isRightAligned) << i;
    }
}

TEST(TableCells, RightAlignsIntegers) {
    TableCells cells;
    EXPECT_EQ(1U, cells.AddInteger(0));
    EXPECT_EQ(3U, cells.AddInteger(-42));
    EXPECT_EQ(20U, cells.AddInteger(LONG_MIN));
    TableCells::Reader reader(cells);
    for (const std::string expected : {"0", "-42", "-9223372036854775808"}) {
        const TableCell cell = reader.Next();
        EXPECT_EQ(expected, cell.text);
        EXPECT_TRUE(cell.isRightAligned);
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
