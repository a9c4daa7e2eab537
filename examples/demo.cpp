// A tour of Tovik as an application sees it: strings, failed checks and the
// failure manager that decides how they end, a notifier whose listeners
// leave in the middle of a notification, containers, a filtered, sorted
// view of a board's components (board.h) that follows the board,
// coordinates typed in each user unit with a property panel's common value,
// files and the message database, and a small board drawn through a
// recording onto the SVG surface (board_picture.h), written to board.svg.
#include <stdlib.h>
#include <tovik.h>

#include <cstdio>
#include <cstring>

#include "board.h"
#include "board_picture.h"

namespace {

void Section(char const *title) { std::printf("\n== %s\n", title); }

// --- Strings ---------------------------------------------------------------

void ShowStrings() {
  Section("Strings");
  SYS_String name("  C12 decoupling  ");
  name.AllTrim("");
  std::printf("trimmed: \"%s\" (%d bytes)\n", static_cast<char const *>(name), name.GetLength());

  SYS_String copy = name;  // shares the array until one of them is written
  copy.Replace(0, 3, "C7");
  std::printf("copy edited: \"%s\", original kept: \"%s\"\n", static_cast<char const *>(copy),
              static_cast<char const *>(name));

  SYS_String line;
  line << "R" << 10 << " = " << 4.7 << " kOhm";
  std::printf("built: \"%s\"\n", static_cast<char const *>(line));

  char const *refs[] = {"R10", "R2", "R1", "C3", "R007"};
  std::printf("R2 vs R10: %d, R007 vs R7: %d\n", _tcsnumcmp("R2", "R10"), _tcsnumcmp("R007", "R7"));
  for (char const *ref : refs) {
    std::printf("  %-4s matches \"R?\": %d, \"R[0-9]*\": %d\n", ref, SYS_String(ref).Match("R?"),
                SYS_String(ref).Match("R[0-9]*"));
  }
}

// --- A failed check --------------------------------------------------------

int Divide(int a, int b) {
  SSM_ASSERT(b != 0, "Demo: division by zero", SSM_FailureError, 0);
  return b == 0 ? 0 : a / b;
}

void ShowChecks() {
  Section("Checks");
  std::printf("with no manager a failed check passes through: Divide(7, 0) = %d\n", Divide(7, 0));
  try {
    throw SYS_Exception("Invalid number \"%s\"", "12x");
  } catch (SYS_Exception const &e) {
    std::printf("caught SYS_Exception: %s\n", static_cast<char const *>(e.GetText()));
  }
}

// --- The failure manager ---------------------------------------------------

// The application's log: one line per failure, read from the record.
int LogFailure(int type, int *data) {
  SSM::AssertObj record;
  record.SetHandle(SCC_DataToHandle(data), nullptr);
  std::printf("  log: %s(%d) type %d, failure #%d: %s\n",
              static_cast<char const *>(record.GetFileName()), record.GetLineNo(), type,
              record.GetCount(), static_cast<char const *>(record.GetMsg()));
  return 0;
}

// The application's policy for its own checks: a notice carries on, anything
// worse returns failure, so that the check throws from its own place.
int DecideAction(int type, int *data) {
  SSM::AssertObj record;
  record.SetHandle(SCC_DataToHandle(data), nullptr);
  record.SetAction(type == SSM_FailureNotice ? SSM::ActionContinue : SSM::ActionReturnFailure);
  return 0;
}

int TrackWidth(int requested) {
  SSM_ASSERT(requested >= 100, "Demo: track narrower than the process allows", SSM_FailureNotice,
             0);
  return requested < 100 ? 100 : requested;
}

void PlaceOnLayer(int layer) {
  SSM_ASSERT(layer >= 1 && layer <= 32, "Demo: no such copper layer", SSM_FailureError, 12);
  std::printf("  placed on layer %d\n", layer);
}

void ShowFailureManager() {
  Section("Failure manager");
  SSM manager;  // from now on every failed check reaches it
  SCC_EventHook<int> decide(DecideAction), log(LogFailure);
  decide.AddHook(&manager.actionEvent);
  log.AddHook(&manager.logEvent);

  SCC_Stack<int> undo;
  for (int round = 1; round <= 2; ++round) {
    std::printf("round %d\n", round);
    std::printf("  track width: %d\n", TrackWidth(40));  // carries on behind the check
    try {
      PlaceOnLayer(40);
    } catch (SSM::AssertData *record) {
      std::printf("  caught the record of \"%s\", id %d\n", static_cast<char const *>(record->msg),
                  record->id);
    }
    try {
      undo.Pop();  // a check inside the library: type 2 always throws
    } catch (SSM::AssertData *record) {
      std::printf("  caught a library check: \"%s\", seen %d time(s)\n",
                  static_cast<char const *>(record->msg), record->count);
    }
    if (round == 1) {
      // Enough of the notice: disable its record, so that it asks and logs no more.
      SSM::AssertObj notice;
      for (notice.GetFirst(); notice.IsValid(); notice.GetNext()) {
        if (notice.GetID() == 0 && notice.GetMsg().Find("track") >= 0) notice.Disable(1);
      }
    }
  }

  std::printf("registry:\n");
  SSM::AssertObj walk;
  for (walk.GetFirst(&manager); walk.IsValid(); walk.GetNext()) {
    std::printf("  %s(%d): %d failure(s)%s\n", static_cast<char const *>(walk.GetFileName()),
                walk.GetLineNo(), walk.GetCount(), walk.IsDisabled() ? ", disabled" : "");
  }
}

// --- Containers --------------------------------------------------------------

// Prints what an array tells its listeners: the code and the item's handle.
class ArrayLog : public SCC_EventNode<int> {
 public:
  int OnNotification(int code, int *data) override {
    if (code != EvRemapped) {
      std::printf("    array says: code %d, handle %ld\n", code,
                  static_cast<long>(SCC_DataToHandle(data)));
    }
    return 0;
  }
};

void ShowContainers() {
  Section("Containers");
  SCC_Array<int> widths;  // track widths in world units, one per net
  for (int i = 0; i < 6; ++i) widths.Append((i + 1) * 38100);

  ArrayLog log;
  widths.AddListener(log);
  SCC_ArrayIterator<int> cursor(widths, 3);  // stands on the fourth net
  auto at = [&cursor] { return static_cast<std::int32_t>(cursor.GetHandle() - 1); };
  std::printf("cursor on index %d, width %d\n", at(), widths[at()]);

  std::printf("  insert 2 nets before it:\n");
  widths.Insert(0, 2);
  std::printf("cursor now on index %d, width %d\n", at(), widths[at()]);
  std::printf("  delete 2 nets behind it and 3 before it:\n");
  widths.Delete(at() + 1, 2);
  widths.Delete(1, 3);
  std::printf("cursor still on index %d, width %d; %d nets left\n", at(),
              widths[at()], widths.GetSize());

  SCC_Array<int> snapshot = widths;  // shares the buffer until one side writes
  log.Leave();
  widths[0] = 1;
  std::printf("after a write: original[0] = %d, snapshot[0] = %d\n", widths[0], snapshot[0]);

  // Named parts: a map whose values stay where they are while it grows.
  SCC_Map<SYS_String, SYS_String> parts;
  parts.Insert("R1", "10k 0603");
  SYS_String *r1 = parts.Find("R1");
  for (int i = 2; i <= 400; ++i) {
    SYS_String name;
    name << "R" << i;
    parts.Insert(name, "4k7 0402");
  }
  parts.Insert("C1", "100n 0402");
  std::printf("%d parts in %d buckets; R1 kept its address: %s; C1 is %s\n", parts.GetCount(),
              parts.tableSize, parts.Find("R1") == r1 ? "yes" : "no",
              static_cast<char const *>(*parts.Find("C1")));
}

// --- Notification ----------------------------------------------------------

// A listener that leaves the ring after it has heard a number of notifications.
class Watcher : public SCC_EventNode<int> {
 public:
  Watcher(char const *n, int lifetime) : name(n), remaining(lifetime) {}

  int OnNotification(int code, int *data) override {
    std::printf("  %s hears code %d, handle %ld\n", name, code,
                static_cast<long>(SCC_DataToHandle(data)));
    if (--remaining == 0) {
      std::printf("  %s leaves during the walk\n", name);
      Leave();
    }
    return 1;
  }

 private:
  char const *name;
  int remaining;
};

void ShowNotification() {
  Section("Notification");
  SCC_Notifier board;
  Watcher a("A", 1), b("B", 2), c("C", 3);
  a.JoinAtEnd(&board);
  b.JoinAtEnd(&board);
  c.JoinAtEnd(&board);
  for (SCC_Handle part = 1; part <= 3; ++part) {
    std::printf("part %ld changed:\n", static_cast<long>(part));
    board.Notify(EvChanged, SCC_HandleToData(part));
  }
  std::printf("listeners left: %d\n", board.HasListeners());
}

// --- Observable collections ----------------------------------------------

// The placement list of the top side: a view of the board's components that
// follows the board while parts are renamed, flipped, placed and removed.

char const *Ref(SCC_Handle handle) { return Component::Of(handle).reference; }

// What the placement list tells, in words.
class PlacementLog : public SCC_EventNode<int> {
 public:
  explicit PlacementLog(SCC_StdCollection &v) : view(v) {}

  int OnNotification(int code, int *data) override {
    SCC_Handle const part = SCC_DataToHandle(data);
    switch (code) {
      case EvAdded:
        std::printf("  heard %d (added): %s now at row %d\n", code, Ref(part),
                    view.GetPositionByHandle(part));
        break;
      case EvDeleted:
        std::printf("  heard %d (deleted): %s leaves row %d\n", code, Ref(part),
                    view.GetPositionByHandle(part));
        break;
      case EvReload:
        std::printf("  heard %d (reloaded): %d rows\n", code, view.GetSize());
        break;
      case EvFocused:
        if (part != 0) {
          std::printf("  heard %d (focused): %s selected\n", code, Ref(part));
        } else {
          std::printf("  heard %d (focused): a part deselected\n", code);
        }
        break;
      default:
        std::printf("  heard %d\n", code);
    }
    return 0;
  }

 private:
  SCC_StdCollection &view;
};

void PrintList(char const *title, SCC_StdCollection &view) {
  std::printf("%s:", title);
  for (std::int32_t row = 0; row < view.GetSize(); ++row) {
    Component const &part = Component::Of(view.GetAt(row));
    std::printf(" %s(%s)", static_cast<char const *>(part.reference),
                static_cast<char const *>(part.value));
  }
  std::printf("\n  selected:");
  for (std::int32_t row = 0; row < view.GetSize(); ++row) {
    if (view.IsInFocus(view.GetAt(row), nullptr)) std::printf(" %s", Ref(view.GetAt(row)));
  }
  std::printf("%s\n", view.HasFocus() ? "" : " none");
}

void ShowCollections() {
  Section("Observable collections");
  Board board;
  board.Place("U3", "top", "MCU");
  board.Place("R10", "top", "10k");
  board.Place("C1", "top", "100n");
  board.Place("R2", "top", "4k7");
  board.Place("R5", "bottom", "1k");
  board.Place("R7", "top", "DNP");
  board.Place("C8", "bottom", "10u");
  board.Place("C12", "top", "100n");
  std::printf("board, in placement order:");
  for (std::size_t i = 0; i < board.Count(); ++i) {
    Component const &part = board.At(i);
    std::printf(" %s(%s, %s)", static_cast<char const *>(part.reference),
                static_cast<char const *>(part.value), static_cast<char const *>(part.layer));
  }
  std::printf("\n");

  // The filters outlive the view that asks them.
  OnLayer top("top");
  Unfitted unfitted;
  ComponentList placement(board);
  SYS_Filter &fittedOnTop = top & !unfitted;
  placement.SetFilter(&fittedOnTop);
  fittedOnTop.DetachFromOperands();  // the view owns the expression now
  placement.SetSort(&ComponentList::ByReference, 0);
  PlacementLog log(placement);
  placement.SetNotificationHandler(&log);
  placement.AllowReload(1);
  PrintList("fitted parts on top, by designator", placement);

  std::printf("select R10 and U3:\n");
  placement.SetFocus(board.Find("R10")->Handle(), 1);
  placement.SetFocus(board.Find("U3")->Handle(), 1);

  std::printf("R10 is renamed R1:\n");
  board.Rename(*board.Find("R10"), "R1");
  PrintList("now", placement);
  std::printf("R1 still selected: %s\n",
              placement.IsInFocus(board.Find("R1")->Handle(), nullptr) ? "yes" : "no");

  std::printf("C12 moves to the bottom side:\n");
  board.MoveToLayer(*board.Find("C12"), "bottom");
  std::printf("R3 is placed on top:\n");
  board.Place("R3", "top", "22R");
  std::printf("U3 is removed from the board:\n");
  board.Remove(*board.Find("U3"));
  PrintList("now", placement);
}


// --- Units and properties ---------------------------------------------------

// The property panel's "Value" row: a component's value text.
class ValueProperty : public SCC_StdProperty {
 public:
  using SCC_StdProperty::GetValue;
  using SCC_StdProperty::SetValue;
  int GetValue(SCC_Handle handle, SCC_Variant &value) override {
    if (handle == 0) return 0;
    value = SCC_Variant(Component::Of(handle).value);
    return 1;
  }
};

void ShowUnitsAndProperties() {
  Section("Units and properties");
  struct Typed {
    SYS_UnitType unit;
    char const *x, *y;
  } const typed[] = {{SYS_UNIT_MILS, "1250", "-300.5"},
                     {SYS_UNIT_MILLIMETERS, "31.75", "-7.6327"},
                     {SYS_UNIT_INCHES, "1.25", "-0.3005"},
                     {SYS_UNIT_MICRONS, "31750", "-7632.7"}};
  for (Typed const &t : typed) {
    SYS_Convert reader(t.unit);
    SYS_Point world;
    // Str2Base, not Str2CoordX: a coordinate text is a measure and cannot be negative.
    if (reader.Str2Base(t.x, &world.x) == 0 || reader.Str2Base(t.y, &world.y) == 0) continue;
    std::printf("typed (%s,%s) %s = world (%d,%d):", t.x, t.y, reader.GetUnitName(), world.x, world.y);
    for (Typed const &other : typed) {
      if (other.unit == t.unit) continue;
      SYS_Convert const shown(other.unit);
      std::printf(" %s %s", static_cast<char const *>(shown.Point2Str(world)), shown.GetUnitName());
    }
    std::printf("\n");
  }
  SYS_Convert const inches(SYS_UNIT_INCHES);
  std::int32_t world = 0;
  std::printf("\"28.000001\" inches is outside the board: %s; \"1,5\" is no number: %s\n",
              inches.Str2Base("28.000001", &world) ? "accepted" : "refused",
              inches.Str2Base("1,5", &world) ? "accepted" : "refused");

  Board board;
  board.Place("R1", "top", "10k");
  board.Place("R2", "top", "10k");
  board.Place("R3", "top", "4k7");
  ComponentList parts(board);
  parts.AllowReload(1);
  ValueProperty value;
  auto showPanel = [&](char const *first, char const *second) {
    parts.SetFocus(board.Find(first)->Handle(), 0);
    parts.SetFocus(board.Find(second)->Handle(), 1);
    SCC_Variant common;
    int const read = value.GetValue(&parts, common);
    std::printf("panel for %s and %s: Value = \"%s\"%s\n", first, second,
                static_cast<char const *>(SYS_String(common)), read && common.IsEmpty() ? " (mixed)" : "");
  };
  showPanel("R1", "R2");
  showPanel("R1", "R3");
}

// --- Files and the message database ----------------------------------------

// The application's answer to file events: failures go to its log, and a
// copy may replace a file it finds in its way.
class FileLog : public SCC_EventNode<SFM_EventData> {
 public:
  FileLog() { JoinAtEnd(&SFM::GetManager()->GetEvent()); }
  int OnNotification(int code, SFM_EventData *data) override {
    if (code == SFM::EvOverwrite) data->SetResult(SFM::EvYes);
    if (code >= SFM::EvOverwrite) {
      std::printf("  file event %d: %s\n", code, static_cast<char const *>(data->GetText()));
    }
    return 0;
  }
};

void ShowFiles() {
  Section("Files and the message database");
  FileLog log;
  char folder[] = "/tmp/tovik-demo-XXXXXX";
  if (::mkdtemp(folder) == nullptr) return;
  SFM_Directory dir(folder);
  SYS_String const texts = dir + "router.txt";
  {
    SFM_File out(texts, "w");
    for (char const *line : {"; texts of the router", "1:Ready", "[errors]", "1:Cannot open %s",
                             "5:Disk full: $", " 6:a line with a leading blank"}) {
      out.WriteLine(line);
    }
  }
  SFM_MessageDB db(texts, 0);  // reports the bad line on standard output
  db.Save(dir + "router.mdb");
  SFM_MessageDB compiled(dir + "router.mdb");
  std::printf("section \"errors\" starts at id %d:", compiled.GetSectionBase("errors"));
  for (SFM_MessageDB::SectionIterator it(&compiled, "errors", 0); !it.IsEmpty(); ++it) {
    std::printf(" #%d \"%s\"", it.GetPosition(), static_cast<char const *>(SYS_String(it)));
  }
  std::printf("\n");

  SFM_File missing(dir + "missing.txt");
  std::printf("opening a missing file: %d\n", missing.Open("r"));
  std::printf("copy over an existing file: %d\n", dir.CopyFileA(texts, dir + "router.mdb", 0));
  std::printf("files:");
  for (char const *name = dir.GetNextFile("*.*"); name != nullptr; name = dir.GetNextFile(nullptr)) {
    std::printf(" %s", name);
  }
  std::printf("\nemptied and removed: %d\n", dir.DeleteAll() && SFM_Directory().DeleteSubdir(folder));
}

// --- The board picture -------------------------------------------------------

// A small board drawn through a recording replayed onto the SVG surface: the
// components are placed by positions, listed by designator, selected, and the
// selection is shown as an exclusive-or overlay. Its texts come from a
// message database that the build compiles with tovik-mdb.

// The text of a number in the message database's section "board".
SYS_String Text(int number) {
  SFM_MessageDB *db = SFM::GetManager()->GetMessageDB();
  return db->getTxt(db->GetSectionBase("board") + number);
}

void LoadMessages() {
  SFM::GetManager()->Initiate(TOVIK_DEMO_MESSAGES);
  SFM_MessageDB *db = SFM::GetManager()->GetMessageDB();
  int texts = 0;
  for (SFM_MessageDB::SectionIterator it(db, "board", 0); !it.IsEmpty(); ++it) ++texts;
  char const *const name = std::strrchr(TOVIK_DEMO_MESSAGES, '/');
  std::printf(Text(1), name != nullptr ? name + 1 : TOVIK_DEMO_MESSAGES, texts, "board",
              db->GetSectionBase("board"));
  std::printf("\n");
}

void PlaceComponents(Board &board) {
  struct Placed {
    char const *reference, *value;
    Footprint const &footprint;
    double x, y, degrees;  // millimetres, counter-clockwise
    bool bottom;
  } const placed[] = {
      {"J1", "HDR4", Header4(), 7, 4, 0, false},
      {"U1", "MCU", SmallOutline8(), 20, 13, 0, false},
      {"U2", "EEPROM", SmallOutline8(), 31, 13, 90, true},
      {"R1", "10k", Chip(), 8, 20, 0, false},
      {"R2", "10k", Chip(), 8, 15, 0, false},
      {"R10", "4k7", Chip(), 8, 10, 90, false},
      {"C1", "100n", Chip(), 20, 21, 180, false},
      {"C2", "100n", Chip(), 31, 21.5, 45, true},
      {"C3", "220u", Radial(), 33, 5, 0, false},
      {"R3", "DNP", Chip(), 20, 5, 30, false}};
  int mirrored = 0;
  for (Placed const &p : placed) {
    Component &part = board.Place(p.reference, p.bottom ? "bottom" : "top", p.value);
    part.position.Set(SYS_Point(Mm(p.x), Mm(p.y)),
                      static_cast<std::int32_t>(p.degrees * SYS_ANGLE_PER_DEGREE), p.bottom);
    part.footprint = &p.footprint;
    mirrored += p.bottom;
  }
  std::printf(Text(2), static_cast<int>(board.Count()), mirrored);
  std::printf("\n");
}

// The designators of the rows, all of them or the focused ones only.
SYS_String Designators(ComponentList &parts, bool focusedOnly) {
  SYS_String list;
  for (std::int32_t row = 0; row < parts.GetSize(); ++row) {
    if (!focusedOnly || parts.IsInFocus(parts.GetAt(row), nullptr)) list << " " << Ref(parts.GetAt(row));
  }
  return list;
}

// The board's edge, every component and a caption in the user's unit.
void DrawBoard(CDynamic &drawing, Board const &board, SYS_Convert const &unit) {
  SYS_Box const edge(0, 0, Mm(40), Mm(25));
  drawing.StartBatchDraw();
  DrawEdge(drawing, edge, Mm(2));
  for (std::size_t i = 0; i < board.Count(); ++i) DrawComponent(drawing, board.At(i));
  drawing.TextAlign(0, 1);
  drawing.DrawXorText(FormattedString(Text(10), static_cast<char const *>(unit.Measure2Str(edge.GetWidth())),
                                      static_cast<char const *>(unit.Measure2Str(edge.GetHeight())),
                                      unit.GetUnitName()),
                      Mm(1.2), kEdge, SYS_Point(0, Mm(27)), 0);
  drawing.EndBatchDraw();  // the surface replays the recording now
  SYS_Box const covered = drawing.GetExtent();
  std::printf(Text(4), static_cast<int>(drawing.GetRecording().GetSize()),
              static_cast<char const *>(unit.Point2Str(covered.GetLowerLeft())),
              static_cast<char const *>(unit.Point2Str(covered.GetUpperRight())), unit.GetUnitName());
  std::printf("\n");
}

// The focus as boxes around the parts, in a batch of its own: starting it
// replays the boxes of the last selection, which takes them away. Then the
// property panel's common value, and where the parts stand.
void Select(CDynamic &overlay, ComponentList &parts, SYS_Convert const &unit) {
  ValueProperty value;
  SCC_Variant common;
  value.GetValue(&parts, common);
  std::printf(Text(5), static_cast<char const *>(Designators(parts, true)),
              common.IsEmpty() ? static_cast<char const *>(Text(6))
                               : static_cast<char const *>(SYS_String(common)));
  std::printf("\n");
  overlay.StartBatchDraw();
  overlay.PenColor(kSelection);
  for (std::int32_t row = 0; row < parts.GetSize(); ++row) {
    Component const &part = Component::Of(parts.GetAt(row));
    if (!parts.IsInFocus(part.Handle(), nullptr)) continue;
    SYS_Box box = ComponentBox(part);
    box.Expand(Mm(0.4));
    overlay.DrawXorBox(box);
    std::printf(Text(7), static_cast<char const *>(part.reference),
                static_cast<char const *>(unit.Point2Str(part.position.GetOrigin())), unit.GetUnitName(),
                static_cast<char const *>(unit.Angle2Str(part.position.GetOrientation())));
    std::printf("\n");
  }
  overlay.EndBatchDraw();
}

bool WriteFile(char const *name, SYS_String const &text) {
  SFM_File out(name, "wb");
  return out.IsOpen() && out.Write(static_cast<char const *>(text), text.GetLength()) != 0;
}

void ShowBoardPicture() {
  Section("Board picture");
  LoadMessages();
  Board board;
  PlaceComponents(board);

  ComponentList parts(board);
  parts.SetSort(&ComponentList::ByReference, 0);
  parts.AllowReload(1);
  std::printf(Text(3), static_cast<char const *>(Designators(parts, false)));
  std::printf("\n");

  // The user works in millimetres; the view shows the board with a margin.
  SYS_Convert const unit(SYS_UNIT_MILLIMETERS);
  UI_SvgDrawArea area(SYS_Box(-Mm(2), -Mm(2), Mm(42), Mm(29)), 880);
  area.PenMode(UI_SvgDrawArea::kXorMode);  // recordings are overlays
  CDynamic drawing(&area), overlay(&area);
  DrawBoard(drawing, board, unit);

  parts.SetFocus(board.Find("R1")->Handle(), 0);
  parts.SetFocus(board.Find("R2")->Handle(), 1);
  Select(overlay, parts, unit);
  parts.SetFocus(board.Find("R10")->Handle(), 1);
  Select(overlay, parts, unit);

  SYS_String const svg = area.GetSvg();
  if (WriteFile("board.svg", svg)) {
    std::printf(Text(8), "board.svg", svg.GetLength());
  } else {
    std::printf(Text(9), "board.svg");
  }
  std::printf("\n");
}

}  // namespace

// --- Placing a component ----------------------------------------------------

double Mm(std::int32_t world) { return static_cast<double>(world) / SYS_WORLD_PER_MM; }

void PrintBox(char const *what, SYS_Box const &box) {
  std::printf("  %-13s (%8.4f, %8.4f) .. (%8.4f, %8.4f) mm\n", what, Mm(box.GetLeft()), Mm(box.GetLower()),
              Mm(box.GetRight()), Mm(box.GetUpper()));
}

// A two-pad part drawn around its own origin, with a half-circle outline
// around pin 1, placed on the board turned by 30 degrees and flipped to the
// bottom side: every shape goes through one transform built from the
// position, and the part's box is accumulated from the neutral box.
void ShowPlacement() {
  Section("Placing a component");
  std::int32_t const um = SYS_WORLD_PER_MICRON;
  SYS_Box pads[2] = {{-1600 * um, -700 * um, -400 * um, 700 * um}, {400 * um, -700 * um, 1600 * um, 700 * um}};
  SYS_Arc outline(SYS_Point(-1000 * um, 2000 * um), SYS_Point(-1000 * um, -2000 * um), SYS_Point(-1000 * um, 0),
                  2000 * um);

  SYS_Position const position(SYS_Point(25400 * um, 12700 * um), 30 * SYS_ANGLE_PER_DEGREE, 1);
  // Local coordinates around the origin are carried to the position: no
  // entry move, flip after the turn.
  SYS_Transform const place(position, 0, 1, 0);
  std::printf("at (%.4f, %.4f) mm, turned %d degrees, mirrored %d\n", Mm(position.GetOrigin().x),
              Mm(position.GetOrigin().y), position.GetOrientation() / SYS_ANGLE_PER_DEGREE, position.GetMirror());

  SYS_Box all = SYS_Box::Neutral();
  for (int i = 0; i < 2; ++i) {
    PrintBox(i == 0 ? "pad 1 local" : "pad 2 local", pads[i]);
    pads[i].Transform(place);
    PrintBox("  placed", pads[i]);
    all.Combine(pads[i]);
  }
  std::printf("  outline local  from (%.4f, %.4f) to (%.4f, %.4f), sweep %.1f degrees\n",
              Mm(outline.start.x), Mm(outline.start.y), Mm(outline.end.x), Mm(outline.end.y),
              outline.GetSizeAngle() / static_cast<double>(SYS_ANGLE_PER_DEGREE));
  outline.Transform(place);
  // The radius keeps its sign under a mirror, so the placed arc is read the
  // other way round: its ends swap to keep the drawn half.
  SYS_Arc const drawn(outline.end, outline.start, outline.center, outline.radius);
  std::printf("  outline placed from (%.4f, %.4f) to (%.4f, %.4f), centre (%.4f, %.4f)\n", Mm(drawn.start.x),
              Mm(drawn.start.y), Mm(drawn.end.x), Mm(drawn.end.y), Mm(drawn.center.x), Mm(drawn.center.y));
  PrintBox("outline box", drawn.GetBox());
  all.Combine(drawn.GetBox());
  PrintBox("part box", all);
  SYS_Location pin1(SYS_Point(-1000 * um, 0), 0);
  pin1.Transform(place);
  std::printf("  pin 1 at (%.4f, %.4f) mm, facing %.1f degrees\n", Mm(pin1.GetOrigin().x), Mm(pin1.GetOrigin().y),
              pin1.GetOrientation() / static_cast<double>(SYS_ANGLE_PER_DEGREE));
}

int main() {
  ShowStrings();
  ShowChecks();
  ShowFailureManager();
  ShowNotification();
  ShowContainers();
  ShowCollections();
  ShowUnitsAndProperties();
  ShowFiles();
  ShowPlacement();
  ShowBoardPicture();
  return 0;
}
