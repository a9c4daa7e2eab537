// The umbrella header: an application includes this and links tovik::tovik.
#ifndef TOVIK_H
#define TOVIK_H

#include "tovik_export.h"

// Core frame
#include "sys_string.h"
#include "ssm.h"
#include "sys_exception.h"

// Events
#include "scc_event.h"
#include "scc_iterator.h"

// Containers
#include "scc_hash.h"
#include "scc_shared.h"
#include "scc_array.h"

#endif  // TOVIK_H
