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

TEST_F(Screens, CapturesFollowTheirWindowsAndEndWithThem) {
  SimSetParams(R"({"sim.screens": {"windows": [{"id": 9, "x": 1}, {"id": 10}]}})");
  EXPECT_EQ(StartScreenCapture(9, false, 3), 0);
  EXPECT_EQ(StartScreenCapture(10, false, 4), 0);
  EXPECT_TRUE(stand::WaitFor("OnScreenCaptureStatus 1 9 3"));
  SimSetParams(R"({"sim.screens": {"windows": [{"id": 9, "x": 50}]}})");
  EXPECT_TRUE(stand::WaitFor("OnShareWindowChanged 9 1 3"));
  EXPECT_TRUE(stand::WaitFor("OnScreenCaptureStatus 0 10 4"));
  ScreenRect rect{};
  GetCaptureRect(3, &rect);
  EXPECT_EQ(rect.x, 50);
  EXPECT_EQ(StopScreenCapture(3), 0);
  EXPECT_TRUE(stand::WaitFor("OnScreenCaptureStatus 0 9 3"));
  GetCaptureRect(3, &rect);
  EXPECT_EQ(rect.x, 0);
}

TEST_F(Screens, AudioCaptureTellsEachChangeOnce) {
  stand::Clear();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(StartScreenAudioCapture(0), 0);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(StopScreenAudioCapture(0), 0);
  GetDesktopThumbnailAsyn(7, 7);
  ASSERT_NE(stand::WaitForPrefix("OnDesktopThumbnail"), "");
  EXPECT_EQ(stand::Count("OnAudioCapturerStart"), 1);
  EXPECT_EQ(stand::Count("OnAudioCapturerStop"), 1);
}

}  // namespace
