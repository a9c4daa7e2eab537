// SFM_FilePath: the text of a path, split into its parts and joined again.
//
// A path is held as six texts: the full path, and the four parts it is made
// of plus the name with its extension:
//
//   full path    = base path + relative path + name with extension
//   base path    = "C:" (up to and with the first colon) or a network root
//                  "\\server\share\"; empty for a path with neither
//   relative     = the directories behind the base, with the separator that
//                  closes them (and the one that opens them when rooted)
//   name+ext     = name + extension
//   extension    = the last dot of the name and what follows it, or empty
//
// Each part can be read or replaced on its own; the full path follows. It is
// a plain value: nothing here looks at the file system, and no text is ever
// refused: text that is no sensible path is split by the same rules. Both
// '\' and '/' separate directories (DirectorySeparators); wherever a
// separator is added, it is the one DefaultSeparator selects ('\' unless the
// application changes it). Positions are bytes; the searches walk by
// characters of the process code page, the "last byte" tests look at bytes.
//
// Every Get... takes an optional path: when it is not null the object takes
// that path first (as operator= does) and the getter reads the new state.
// Every Set... returns the new full path; its two-argument form takes such a
// path first, then acts as the one-argument form.
#ifndef TOVIK_SFM_FILE_PATH_H
#define TOVIK_SFM_FILE_PATH_H

#include "sys_string.h"
#include "tovik_export.h"

class TOVIK_API SFM_FilePath {
 public:
  // "\/": the characters that separate directories, backslash first.
  static SYS_String const DirectorySeparators;
  // Index into DirectorySeparators of the separator the path operations add;
  // 0 (the backslash) at start. Any value other than 1 selects the backslash.
  static int DefaultSeparator;

  SFM_FilePath() = default;
  // Parses text; null counts as empty.
  SFM_FilePath(char const *text);    // NOLINT: a path converts from its text
  SFM_FilePath(CString const &text);  // NOLINT
  SFM_FilePath(SFM_FilePath const &other) = default;
  SFM_FilePath &operator=(SFM_FilePath const &other) = default;
  virtual ~SFM_FilePath() = default;

  // Null (or empty) text clears every part, other text is parsed; both
  // return the new full path.
  SYS_String operator=(char const *text);
  SYS_String operator=(CString const &text);

  operator char const *() const { return fullPath; }
  operator SYS_String() const { return fullPath; }
  int IsEmpty() const { return fullPath.GetLength() == 0 ? 1 : 0; }

  SYS_String GetBasePath(char const *path = nullptr);
  SYS_String GetRelPath(char const *path = nullptr);
  // Base path + relative path.
  SYS_String GetFileDirectory(char const *path = nullptr);
  SYS_String GetFileNameExt(char const *path = nullptr);
  SYS_String GetFileName(char const *path = nullptr);
  // The extension with its dot.
  SYS_String GetFileExtension(char const *path = nullptr);

  // Each setter parses its text as a path of its own and takes from that
  // parse only the parts it names, so SetBasePath("dir\x") empties the base
  // and SetRelPath("x") empties the relative path.
  SYS_String SetBasePath(char const *text);
  SYS_String SetBasePath(char const *path, char const *text);
  SYS_String SetRelPath(char const *text);
  SYS_String SetRelPath(char const *path, char const *text);
  // Base and relative path from text, taken as a directory whether or not
  // it ends in a separator; empty text removes the directory.
  SYS_String SetFileDirectory(char const *text);
  SYS_String SetFileDirectory(char const *path, char const *text);
  // The name from text's name part. With dropExtension 0 the extension of
  // text joins the name ("x.y" gives name "x.y"); otherwise it is dropped.
  // This path's extension stays in both cases.
  SYS_String SetFileName(char const *text, int dropExtension);
  SYS_String SetFileName(char const *path, char const *text, int dropExtension);
  // The extension of "." + text (unless text begins with a dot): "txt" and
  // ".txt" set ".txt", "tar.gz" sets ".gz", empty text removes it.
  SYS_String SetFileExtension(char const *text);
  SYS_String SetFileExtension(char const *path, char const *text);
  // Name and extension from text's name part, every dot kept: "a.b.c" gives
  // name "a.b" and extension ".c". A directory in text is ignored.
  SYS_String SetFileNameExt(char const *text);
  SYS_String SetFileNameExt(char const *path, char const *text);
  // Each of base, relative path, name and extension that is empty here takes
  // that part of text's parse; parts that hold anything stay.
  SYS_String SetDefault(char const *text);
  // Roots a path that has no base at the directory text: the base of text,
  // then text's directories and name as directories, then this relative
  // path, closed by the default separator. A path with a base stays as it
  // is. Only the default separator counts as closing a directory here.
  SYS_String SetDefPath(char const *text);
  // Closes a non-empty full path with the default separator, unless it ends
  // in it already, and parses the result: a name becomes a directory. A path
  // ending in the other separator gets a second one.
  SYS_String AddSeparator();

 protected:
  SYS_String fullPath;
  SYS_String basePath;
  SYS_String relPath;
  SYS_String fileNameExt;
  SYS_String fileName;
  SYS_String fileExtension;

 private:
  // Splits a whole path into the parts.
  virtual void Process(SYS_String const &text);
  // Name with extension and full path from the parts.
  void Regenerate();
  void Clear();
  // Takes path first when it is not null, then makes the parts consistent.
  void Prepare(char const *path);
  // Prepare(path), then set(text), text read before path is taken.
  SYS_String WithPath(char const *path, char const *text, SYS_String (SFM_FilePath::*set)(char const *));
};

#endif  // TOVIK_SFM_FILE_PATH_H
