// The draw area interface: its key functions and the main draw area.
#include "ui_draw_area.h"

// The redraw hooks' listener types live in the library.
template class SCC_EventNode<UI_DrawArea::RedrawBlock>;
template class SCC_EventHook<UI_DrawArea::RedrawBlock>;
template class SCC_Event<UI_DrawArea::RedrawBlock>;
template class SCC_EventIterator<UI_DrawArea::RedrawBlock>;

UI_DrawArea *UI_DrawArea::s_pMainDrawArea = nullptr;

UI_ScreenCoordConverter::~UI_ScreenCoordConverter() = default;

UI_DrawArea::~UI_DrawArea() = default;
