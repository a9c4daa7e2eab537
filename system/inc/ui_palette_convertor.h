// UI_PaletteColorConvertor: turns a palette index into the colour that the
// main draw area shows for it, and passes palette changes on.
//
// Direction 0 reads the value as an integer index (2.9 is index 2) and gives
// the main draw area's GetCurrentPaletteColorRGB of it as an integer variant;
// any other direction gives the value back unchanged. Every instance listens
// to one process-wide notifier: after the application has changed the
// palette it calls NotifyPaletteChange(), and each convertor sends code 4 to
// its own listeners (the properties above it). Other codes go no further.
//
// Copies follow the convertors' rule: the copy takes the original's
// listeners, and its hook calls the original as long as that lives, then the
// copy itself.
#ifndef TOVIK_UI_PALETTE_CONVERTOR_H
#define TOVIK_UI_PALETTE_CONVERTOR_H

#include "scc_convertor.h"
#include "scc_event.h"
#include "scc_variant.h"
#include "tovik_export.h"

class TOVIK_API UI_PaletteColorConvertor : public SCC_Convertor {
 public:
  // The code of a palette change.
  static constexpr int kPaletteChanged = 4;

  UI_PaletteColorConvertor();
  UI_PaletteColorConvertor(UI_PaletteColorConvertor &other);
  UI_PaletteColorConvertor &operator=(UI_PaletteColorConvertor &other);
  ~UI_PaletteColorConvertor() override;

  // Direction 0 needs a main draw area: without one it is a failed check,
  // and the colour 0 if the check returns. A text that is no number throws
  // SYS_Exception, as reading any variant as an integer does.
  SCC_Variant Convert(SCC_Variant value, int direction) override;
  // The hook's method: code 4 is sent on, with its data, through this
  // convertor's own notifier. Returns 0.
  int OnEvent(int code, int *data);
  // Tells every convertor that the palette changed.
  static void NotifyPaletteChange();

 protected:
  static SCC_Notifier s_Notifier;

 private:
  SCC_HeldHook<UI_PaletteColorConvertor> hook;
};

#endif  // TOVIK_UI_PALETTE_CONVERTOR_H
