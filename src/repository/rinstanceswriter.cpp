#include "kestro/repository/rinstanceswriter.h"

namespace kestro {
namespace repository {

RInstancesWriter::~RInstancesWriter() {}

}  // namespace repository
}  // namespace kestro
