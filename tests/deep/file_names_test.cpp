#include "deep/file_names.h"

#include <gtest/gtest.h>

namespace zelvo::tests {

using deep::fileUrl;
using deep::numberedName;
using deep::reportName;
using deep::salvagedName;

TEST(FileNames, OnlyTheEndingsOfFilmsAreTakenOff) {
  EXPECT_EQ(salvagedName("clip.avi"), "clip-salvaged.avi");
  EXPECT_EQ(salvagedName("Clip.DivX"), "Clip-salvaged.avi");
  EXPECT_EQ(salvagedName("clip.2020.avi"), "clip.2020-salvaged.avi");
  EXPECT_EQ(salvagedName("disk.img"), "disk.img-salvaged.avi");
  EXPECT_EQ(salvagedName(".avi"), ".avi-salvaged.avi");
  EXPECT_EQ(salvagedName("clip"), "clip-salvaged.avi");
}

TEST(FileNames, LongNamesAreCutBetweenLetters) {
  std::string name;
  for (int i = 0; i < 130; ++i) name += "\u00e9";
  const std::string salvaged = salvagedName(name + ".avi");
  EXPECT_LE(salvaged.size(), 240U);
  EXPECT_GE(salvaged.size(), 238U);
  EXPECT_TRUE(salvaged.ends_with("\u00e9-salvaged.avi"));
}

TEST(FileNames, ReportsAndNumbers) {
  EXPECT_EQ(reportName("clip-salvaged.avi"), "clip-salvaged.html");
  EXPECT_EQ(reportName("clip"), "clip.html");
  EXPECT_EQ(numberedName("clip-salvaged.avi", 2), "clip-salvaged-2.avi");
  EXPECT_EQ(numberedName("clip", 3), "clip-3");
}

TEST(FileNames, AddressesEscapeWhatIsNoPlainLetter) {
  EXPECT_EQ(fileUrl("/films/a b.avi"), "file:///films/a%20b.avi");
  EXPECT_EQ(fileUrl("/f/100%#?.avi"), "file:///f/100%25%23%3F.avi");
  EXPECT_EQ(fileUrl("/f/\u00e9~-_.avi"), "file:///f/%C3%A9~-_.avi");
}

}  // namespace zelvo::tests
