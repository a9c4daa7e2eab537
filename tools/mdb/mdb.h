// The commands of tovik-mdb that are more than a few lines.
#ifndef TOVIK_MDB_MDB_H
#define TOVIK_MDB_MDB_H

#include <ostream>
#include <string>
#include <vector>

#include "catalog.h"

// Writes the catalog in the text form; answers why compiling the result
// would not give the same database back (nothing when it would).
std::vector<std::string> Dump(Catalog const &catalog, std::ostream &out);

// The differences between an original and its translation: messages missing
// on either side, and printf placeholders that differ in count, order or
// conversion.
std::vector<Diagnostic> Compare(Catalog const &original, Catalog const &translation);

// The placeholders of a printf format, each as the kind of argument it takes
// ("d", "ld", "s", "f", ...; "*" for a width or precision taken from the
// arguments), in the order of the arguments.
std::vector<std::string> Placeholders(std::string const &format);

// "X.mdb is older than X.txt", for each of the files whose compiled twin
// (the same name with .mdb, beside it) is older than the text.
std::vector<Diagnostic> StaleCompiled(std::vector<std::string> const &files);

#endif  // TOVIK_MDB_MDB_H
