// The palette colour convertor and its process-wide notifier.
#include "ui_palette_convertor.h"

#include "ssm_check.h"
#include "ui_draw_area.h"

template class SCC_ObjectEventHook<UI_PaletteColorConvertor, int>;

SCC_Notifier UI_PaletteColorConvertor::s_Notifier;

UI_PaletteColorConvertor::UI_PaletteColorConvertor() : hook(this, &UI_PaletteColorConvertor::OnEvent) {
  hook.AddHook(&s_Notifier);
}

UI_PaletteColorConvertor::UI_PaletteColorConvertor(UI_PaletteColorConvertor &other)
    : SCC_Convertor(other), hook(this, &UI_PaletteColorConvertor::OnEvent) {
  hook.JoinCopy(other.hook);
}

UI_PaletteColorConvertor &UI_PaletteColorConvertor::operator=(UI_PaletteColorConvertor &other) {
  if (&other == this) return *this;
  SCC_Convertor::operator=(other);
  hook.JoinCopy(other.hook);
  return *this;
}

UI_PaletteColorConvertor::~UI_PaletteColorConvertor() {
  // Hooks of copies that still call this object call their own from now on.
  hook.HandOver(this);
  hook.Leave();
}

SCC_Variant UI_PaletteColorConvertor::Convert(SCC_Variant value, int direction) {
  if (direction != 0) return value;
  UI_DrawArea const *const area = UI_DrawArea::GetMainDrawArea();
  SSM_CHECK(area != nullptr, "Tovik: palette colour wanted before the main draw area was set");
  if (area == nullptr) return SCC_Variant(0);
  int const index = value;
  return SCC_Variant(static_cast<int>(area->GetCurrentPaletteColorRGB(index)));
}

int UI_PaletteColorConvertor::OnEvent(int code, int *data) {
  if (code == kPaletteChanged) Notify(kPaletteChanged, data);
  return 0;
}

void UI_PaletteColorConvertor::NotifyPaletteChange() { s_Notifier.Notify(kPaletteChanged, nullptr); }
