// The host's data service, whole: dictionaries, cases, and the files and datasets that hold them.
#pragma once

#include "host/case_files.h"
#include "host/cases.h"
#include "host/dictionary.h"
