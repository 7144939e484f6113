// The command-line program from outside: what it prints, writes, and ends with.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/tempfiles.h"
#include "zuml/algebra/comparison.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/zmg.h"
#include "zuml/regions/medidas.h"

namespace {

using zuml_test::TempFolder;

// Runs commands in a folder of its own, which goes with the test.
class Program : public testing::Test {
 protected:
  struct Outcome {
    int status;
    std::string out, err;
  };

  Outcome Run(const std::string& command) const {
    const std::string line = "cd '" + folder_.Path() + "' && " + command + " > out 2> err";
    const int status = std::system(line.c_str());
    return {WEXITSTATUS(status), zuml_test::ReadFile(Path("out")),
            zuml_test::ReadFile(Path("err"))};
  }
  Outcome Zuml(const std::string& arguments) const {
    return Run(std::string(ZUML_PROGRAM) + " " + arguments);
  }
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  // The rows of a table with commas, without its head.
  std::vector<std::vector<double>> ReadTable(const std::string& name) const {
    std::vector<std::vector<double>> rows;
    std::istringstream text(zuml_test::ReadFile(Path(name)));
    std::string line, cell;
    std::getline(text, line);
    while (std::getline(text, line)) {
      std::istringstream cells(line);
      rows.emplace_back();
      while (std::getline(cells, cell, ','))
        rows.back().push_back(std::strtod(cell.c_str(), nullptr));
    }
    return rows;
  }

  TempFolder folder_;
};

TEST_F(Program, MeasuresTheSampleAsItWasDrawn) {
  ASSERT_EQ(Run(std::string(ZUML_MAKE_PARTS) + " parts.png truth.csv").status, 0);
  const Outcome run = Zuml(
      "measure parts.png --min-area 50 --table table.csv --labels labels.zmg --overlay over.png");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("14 parts"), std::string::npos) << run.out;

  // Pieces that touch are one part; noise and the falling light move edges by a fraction of a
  // pixel.
  std::map<double, double> areas;
  std::map<double, std::pair<double, double>> places;
  for (const auto& row : ReadTable("truth.csv")) {
    areas[row[0]] += row[4];
    places[row[0]] = {row[2], row[3]};
  }
  const auto table = ReadTable("table.csv");
  const ZUMImage<ZUMLong> labels = ZUMReadZMG(Path("labels.zmg").c_str());
  ASSERT_EQ(table.size(), areas.size());
  for (const auto& [group, area] : areas) {
    int found = 0;
    for (const auto& v : table) {
      // The part that holds the piece's place, or has it in its hole.
      const double x = places[group].first - v[2], y = places[group].second - v[3];
      if (x < 0 || y < 0 || x >= v[4] || y >= v[5]) continue;
      ++found;
      EXPECT_NEAR(v[1], area, 0.05 * area + 10) << "group " << group;
      EXPECT_EQ(ZUMRegionArea(ZUMPointEqual(labels, static_cast<int>(v[0]))), v[1]);
      EXPECT_LE(v[10], v[11]);
    }
    EXPECT_EQ(found, 1) << "group " << group;
  }
  const ZUMImage<ZUMByte> overlay = ZUMReadPNG(Path("over.png").c_str());
  EXPECT_EQ(overlay.GetCSz(), 3);
  EXPECT_EQ(overlay.Rect(), labels.Rect());
}

TEST_F(Program, OptionsChooseWhatIsAPart) {
  // A dark ring, two dark pixels that touch at a corner, and a small ring that is open across a
  // corner, on white; the large ring is red.
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 19, 9, 0, 0), 3, 250);
  image.Cut(ZUMRect(1, 1, 0, 0, 7, 7, 0, 0)).SetPixels(20);
  image.Cut(ZUMRect(3, 3, 0, 0, 5, 5, 0, 0)).SetPixels(250);
  image.Channel(0).Cut(ZUMRect(1, 1, 0, 0, 7, 7, 0, 0)).SetPixels(250);
  for (int c = 0; c < 3; ++c) image(12, 4, 0, 0, c) = image(13, 5, 0, 0, c) = 20;
  const ZUMImage<ZUMByte> open_ring = image.Cut(ZUMRect(16, 6, 0, 0, 18, 8, 0, 0));
  for (int c = 0; c < 3; ++c) {
    open_ring.Channel(c).SetPixels(20);
    open_ring(16, 6, 0, 0, c) = open_ring(17, 7, 0, 0, c) = 250;
  }
  ZUMWritePNG(image, Path("ring.png").c_str());
  const struct {
    const char* options;
    const char* first_line;
    const char* largest;
  } cases[] = {
      {"--dark --threshold 128", "3 parts", " 40  1,1 7x7"},
      {"--dark --threshold 128 --fill", "3 parts", " 49  1,1 7x7"},
      {"--dark --threshold 128 --fill", "3 parts", " 8  16,6 3x3"},
      {"--dark --threshold 128 --fill --connectivity 4", "4 parts", " 7  16,6 3x3"},
      {"--dark --threshold 128 --open 1", "0 parts", ""},
      {"--dark --threshold 128 --close 1", "3 parts", " 40  1,1 7x7"},
      {"--dark --threshold 128 --connectivity 4", "4 parts", " 40  1,1 7x7"},
      {"--dark --threshold 128 --min-area 3 --max-area 7", "1 part\n", "     1        7  16,6 3x3"},
      {"--dark --channel 0 --max-area 6", "1 part\n", " 2  12,4 2x2"},
      {"--dark --threshold 128 --connectivity 4 --min-area 0 --max-area 1", "2 parts", " 1x1"},
      {"--threshold min-variance --channel 1", "2 parts", " 142  0,0 20x10"},
      {"--threshold 251", "0 parts", ""},
  };
  for (const auto& c : cases) {
    const Outcome run = Zuml(std::string("measure ring.png ") + c.options);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(c.first_line), std::string::npos) << c.options << "\n" << run.out;
    EXPECT_NE(run.out.find(c.largest), std::string::npos) << c.options << "\n" << run.out;
  }
}

// The sums of its coordinates pass 32 bits.
TEST_F(Program, MeasuresLargeParts) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 2447, 2047, 0, 0), 1, 10);
  image.Cut(ZUMRect(800, 400, 0, 0, 2299, 1899, 0, 0)).SetPixels(200);
  ZUMWriteZMG(image, Path("large.zmg").c_str(), false);
  const Outcome run = Zuml("measure large.zmg");
  EXPECT_NE(run.out.find("2250000  800,400 1500x1500      1549.5,1149.5 "), std::string::npos)
      << run.out;
}

TEST_F(Program, TellsWhatIsWrongAndWhatWouldBeRight) {
  folder_.Write("text.png", "this is a text\n");
  folder_.Write("empty.png", "");
  folder_.Write("notes.txt", "text");
  const ZUMRect box(0, 0, 0, 0, 3, 3, 0, 0);
  ZUMWritePNG(ZUMImage<ZUMByte>(box, 4, 1), Path("four.png").c_str());
  ZUMWriteZMG(ZUMImage<ZUMByte>(box, 4, 1), Path("four.zmg").c_str(), false);
  ZUMWriteZMG(ZUMImage<ZUMReal>(box, 1, 1.5), Path("real.zmg").c_str(), false);
  ZUMWritePNG(ZUMImage<ZUMByte>(box, 1, 1), Path("grey.png").c_str());
  const struct {
    const char* call;
    int status;
    const char* error;
  } cases[] = {
      {"measure missing.png", 1, "there is no such file"},
      {"measure .", 1, "it is a folder"},
      {"measure text.png", 1, "is no picture in the format of its extension"},
      {"measure empty.png", 1, "the file is empty"},
      {"measure notes.txt", 1, "pictures end in .zmg, .bmp"},
      {"measure four.zmg", 1, "it has 4 channels; 1 (grey) or 3 (colour) would be right"},
      {"measure real.zmg", 1, "it holds double pixels"},
      {"measure grey.png --channel 2", 1, "--channel is to be gray or 0"},
      {"measure grey.png --labels out.png", 1, "labels go to .zmg files"},
      {"measure grey.png --overlay ./grey.png", 1, "it is the file to read"},
      {"measure grey.png --overlay a.png --table a.png", 1, "'a.png' twice"},
      {"measure grey.png --overlay nowhere/out.png", 1, "cannot write 'nowhere/out.png'"},
      {"measure grey.png --table nowhere/out.csv", 1, "cannot write 'nowhere/out.csv'"},
      {"convert grey.png grey.png", 1, "it is the file to read"},
      {"convert real.zmg out.png", 1, "holds double pixels and .png files hold bytes"},
      {"convert four.png out.jpg", 1, "has 4 channels and .jpg files hold 1 or 3"},
      {"convert grey.png out.gif", 1, "its extension is to be"},
      {"measure grey.png", 0, "no threshold tells parts of 'grey.png' from background"},
      {"measure grey.png --threshold 256", 2, "a grey level from 0 to 255"},
      {"measure grey.png --threshold otsu2", 2, "is not otsu, valley, min-variance"},
      {"measure grey.png --connectivity 6", 2, "--connectivity"},
      {"measure grey.png --min-area 9 --max-area 8", 2, "is above --max-area"},
      {"measure grey.png --rows -1", 2, "not in range 0 to 2147483647"},
      {"weigh grey.png", 2, "weigh: is no command: measure, info or convert"},
      {"measure", 2, "IMAGE"},
      {"", 2, "subcommand"},
  };
  for (const auto& c : cases) {
    const Outcome run = Zuml(c.call);
    EXPECT_EQ(run.status, c.status) << c.call;
    EXPECT_NE(run.err.find(c.error), std::string::npos) << c.call << "\n" << run.err;
    EXPECT_TRUE(run.status != 0 || run.out == "grey.png: 4 x 4, no threshold, 0 parts\n")
        << run.out;
  }
  EXPECT_NE(Zuml("measure --help").out.find("--threshold"), std::string::npos);
}

TEST_F(Program, InfoAndConvert) {
  const ZUMImage<ZUMShort> image(ZUMRect(-3, 2, 0, 0, 4, 6, 0, 0), 1, -7);
  image(0, 3) = 900;
  ZUMWriteZMG(image, Path("a.zmg").c_str(), false);
  EXPECT_EQ(Zuml("info a.zmg").out,
            "file        a.zmg\n"
            "pixels      short, 1 channel\n"
            "region      (-3, 2, 0, 0) to (4, 6, 0, 0)\n"
            "size        8 x 5\n"
            "channel 0   -7 to 900\n");
  ASSERT_EQ(Zuml("convert a.zmg a.tif").status + Zuml("convert a.tif b.zmg").status, 0);
  const ZUMImage<ZUMShort> back = ZUMReadZMG(Path("b.zmg").c_str());
  EXPECT_EQ(back.Rect(), ZUMRect(0, 0, 0, 0, 7, 4, 0, 0));
  EXPECT_EQ(back(3, 1), 900);
}

}  // namespace
