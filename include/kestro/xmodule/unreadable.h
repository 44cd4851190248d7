#ifndef KESTRO_XMODULE_UNREADABLE_H
#define KESTRO_XMODULE_UNREADABLE_H

#include <string>
#include <vector>

namespace XModule {

// Sources of the host that a run could not read (a root-only table, a missing folder), so the
// tool can list them at the end: most need root, and a user deserves to know what the report lacks.
// Each source is logged once, at level 2, however often a reader meets it.
void NoteUnreadable(const std::string& source, const std::string& reason);
// "source: reason" per source, in the order first met.
std::vector<std::string> GetUnreadableNotes();
void ClearUnreadableNotes();

}  // namespace XModule

#endif
