#include "Stand.h"

namespace {

class Screens : public stand::Started {};

TEST_F(Screens, ListsShowTheSceneAndOutliveItsChange) {
  SimSetParams(R"({"sim.screens": {"desktops": [{"id": 5, "primary": 1, "width": 800, "height": 600}],
                                   "windows": [{"id": 9, "pid": 77, "title": "Old"}]}})");
  DesktopList desktops{};
  SCGetDesktopList(&desktops);
  ASSERT_EQ(desktops.count, 1);
  EXPECT_EQ(desktops.desktops[0].width, 800);
  WindowList windows{};
  SCGetWindowList(&windows);
  ASSERT_EQ(windows.count, 1);
  EXPECT_EQ(GetPidFromWindowNumber(9), 77);

  EXPECT_EQ(StartScreenCapture(5, true, 0), 0);
  ScreenRect rect{};
  GetCaptureRect(0, &rect);
  EXPECT_EQ(rect.height, 600);

  SimSetParams(R"({"sim.screens": {"desktops": [{"id": 6}]}})");
  EXPECT_STREQ(windows.windows[0].title, "Old");
  FreeDesktopListVector(desktops.desktops, desktops.count);
  FreeWindowListVector(windows.windows, windows.count);
  GetDesktopThumbnailAsyn(320, 180);
  EXPECT_TRUE(stand::WaitFor("OnDesktopThumbnail 1 6 sim-thumbnail:6:320x180"));
  EXPECT_EQ(SimViolationCount(), 0);
}

}  // namespace
