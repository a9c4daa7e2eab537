// The surface the display benchmark replays on: it draws nothing. It lives in
// a file of its own, as an application's surface lives in the application,
// so that neither way of replaying can see through its calls.
#include "cdynamic.h"

namespace {

class NullArea : public UI_DrawArea {
 public:
  using UI_DrawArea::DrawXorBox;
  void PenColor(int) override {}
  void PenSize(std::int32_t) override {}
  void PenMode(int) override {}
  int GetPenMode() override { return 0; }
  void FastMoveTo(SYS_Point const &) override {}
  void FastLineTo(SYS_Point const &) override {}
  void DrawLine(SYS_Point const &, SYS_Point const &, std::int32_t, int) override {}
  void FillRect(SYS_Box, int) override {}
  void FastFrameOval(SYS_Box const &) override {}
  void DrawXorBox(SYS_Box) override {}
};

}  // namespace

UI_DrawArea *NullSurface() {
  static NullArea area;
  return &area;
}
