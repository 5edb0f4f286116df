// The key functions of the data service's interfaces: their tables and type information stand here, in the host, so
// that exceptions and casts work across the boundary.
#include "host/data.h"

VRIX_Variable::~VRIX_Variable() = default;
VRIX_InputCaseIterator::~VRIX_InputCaseIterator() = default;
VRIX_DataSource::~VRIX_DataSource() = default;
