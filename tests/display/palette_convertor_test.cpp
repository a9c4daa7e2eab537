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

class Convertor : public UI_PaletteColorConvertor {
 public:
  static SCC_Notifier &Shared() { return s_Notifier; }
};

// Restores the main draw area a test changed.
struct MainAreaScope {
  UI_DrawArea *const saved = UI_DrawArea::GetMainDrawArea();
  ~MainAreaScope() { UI_DrawArea::SetMainDrawArea(saved); }
};

TEST(PaletteConvertor, ConvertReadsTheMainDrawArea) {
  MainAreaScope const scope;
  Convertor convertor;
  UI_DrawArea::SetMainDrawArea(nullptr);
  SCC_Variant const text("no index");
  SCC_Variant const back = convertor.Convert(text, 1);
  EXPECT_TRUE(back.GetType() == SCC_Variant::ValueString && back == text) << "any non-zero way is unchanged";
  EXPECT_EQ(static_cast<int>(convertor.Convert(3, 0)), 0) << "no main area: a failed check, then colour 0";

  Palette palette;
  UI_DrawArea::SetMainDrawArea(&palette);
  SCC_Variant const colour = convertor.Convert(2.9, 0);
  EXPECT_EQ(colour.GetType(), SCC_Variant::ValueLong);
  EXPECT_EQ(static_cast<int>(colour), 0x10002) << "2.9 is index 2";
  UI_DrawArea plain;
  UI_DrawArea::SetMainDrawArea(&plain);
  EXPECT_EQ(static_cast<int>(convertor.Convert(5, 0)), 0);
}

TEST(PaletteConvertor, PaletteChangesReachEveryConvertorsListeners) {
  tovik_test::Recorder first;
  tovik_test::Recorder second;
  Convertor::NotifyPaletteChange();  // nobody listens yet
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
