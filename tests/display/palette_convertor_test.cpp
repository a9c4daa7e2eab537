// The palette colour convertor: conversion through the main draw area, and
// palette changes fanning out to each convertor's listeners.
#include <gtest/gtest.h>

#include "object_store.h"
#include "ui_draw_area.h"
#include "ui_palette_convertor.h"

namespace {

class Palette : public UI_DrawArea {
 public:
  std::uint32_t GetCurrentPaletteColorRGB(int index) const override { return 0x10000u + index; }
};

struct Convertor : UI_PaletteColorConvertor {
  static SCC_Notifier &Shared() { return s_Notifier; }
};

TEST(PaletteConvertor, ConvertReadsTheMainDrawArea) {
  Convertor convertor;
  UI_DrawArea::SetMainDrawArea(nullptr);
  SCC_Variant const back = convertor.Convert("no index", 1);
  EXPECT_TRUE(back.GetType() == SCC_Variant::ValueString && back == SCC_Variant("no index")) << "any non-zero way is unchanged";
  EXPECT_EQ(static_cast<int>(convertor.Convert(3, 0)), 0) << "no main area: a failed check, then colour 0";
  Palette palette;
  UI_DrawArea::SetMainDrawArea(&palette);
  SCC_Variant const colour = convertor.Convert(2.9, 0);
  UI_DrawArea::SetMainDrawArea(nullptr);
  EXPECT_TRUE(colour.GetType() == SCC_Variant::ValueLong && static_cast<int>(colour) == 0x10002) << "2.9 is index 2";
}

TEST(PaletteConvertor, PaletteChangesReachEveryConvertorsListeners) {
  tovik_test::Recorder first, second;
  auto *original = new Convertor;
  Convertor other;
  first.JoinAtEnd(original);
  second.JoinAtEnd(&other);
  Convertor::NotifyPaletteChange();
  Convertor::Shared().Notify(3, nullptr);
  std::vector<tovik_test::Recorder::Heard> const once{{4, 0}};
  EXPECT_EQ(first.heard, once);
  EXPECT_EQ(second.heard, once) << "code 3 stops at the hooks";

  Convertor copy(*original);  // takes the listener; its hook calls the original
  first.heard.clear();
  Convertor::NotifyPaletteChange();
  EXPECT_TRUE(first.heard.empty());
  delete original;
  Convertor::NotifyPaletteChange();
  EXPECT_EQ(first.heard, once) << "once the original is gone the copy's hook calls the copy";
}

}  // namespace
