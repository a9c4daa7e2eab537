// Text records: what a piece of text on the design is, as data.
//
// SYS_TextStyle is a font name with a character height and width in world
// units; SYS_TextAttributes places a style by a SYS_Position; SYS_Text adds
// the text itself. They hold data only: they neither draw nor measure, and
// nothing is validated. Setters answer 1 and cannot fail.
//
// A SYS_TextAttributes points at its style and does not own it: texts share
// styles, copies share the pointer, and the style must outlive every text
// that uses it. A temporary style cannot be set.
#ifndef TOVIK_SYS_TEXT_RECORDS_H
#define TOVIK_SYS_TEXT_RECORDS_H

#include <cstdint>

#include "sys_point.h"
#include "sys_string.h"
#include "tovik_export.h"

class TOVIK_API SYS_TextStyle {
 public:
  SYS_String GetFont() const { return font; }
  int SetFont(SYS_String const &name) {
    font = name;
    return 1;
  }
  std::int32_t GetHeight() const { return height; }
  int SetHeight(std::int32_t h) {
    height = h;
    return 1;
  }
  std::int32_t GetWidth() const { return width; }
  int SetWidth(std::int32_t w) {
    width = w;
    return 1;
  }

 private:
  SYS_String font;
  std::int32_t height = 0;
  std::int32_t width = 0;
};

class TOVIK_API SYS_TextAttributes {
 public:
  // The style set last, by address: later changes to it show; null until set.
  SYS_TextStyle const *GetStyle() const { return style; }
  int SetStyle(SYS_TextStyle const &s) {
    style = &s;
    return 1;
  }
  int SetStyle(SYS_TextStyle const &&) = delete;  // would point at a temporary

  // As given: no normalisation beyond what the position did when it was built.
  SYS_Position GetPosition() const { return position; }
  int SetPosition(SYS_Position const &p) {
    position = p;
    return 1;
  }

 private:
  SYS_TextStyle const *style = nullptr;
  SYS_Position position;
};

class TOVIK_API SYS_Text : public SYS_TextAttributes {
 public:
  SYS_String GetString() const { return text; }
  int SetString(SYS_String const &s) {
    text = s;
    return 1;
  }

 private:
  SYS_String text;
};

#endif  // TOVIK_SYS_TEXT_RECORDS_H
