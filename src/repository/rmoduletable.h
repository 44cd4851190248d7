#ifndef KESTRO_REPOSITORY_RMODULETABLE_H
#define KESTRO_REPOSITORY_RMODULETABLE_H

#include "kestro/repository/rinventorycase.h"
#include "kestro/repository/rmodule.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace kestro {
namespace repository {

typedef std::vector<boost::shared_ptr<RModule> > RModuleList;

// Which modules a case runs, in run order: the first module that offers a type collects it.
class RModuleTable {
public:
    enum Row { RowSmm, RowCmm, RowCfcInBand, RowCfcOob, RowOrdinary };

    static Row RowOf(RInventoryCase c);
    // Appends fresh modules of the row, after the leading module every case has.
    static void AppendRow(Row row, RModuleList& modules);
    static void AppendLeading(RModuleList& modules);
};

}  // namespace repository
}  // namespace kestro

#endif
