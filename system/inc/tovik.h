// The umbrella header: an application includes this and links tovik::tovik.
#ifndef TOVIK_H
#define TOVIK_H

#include "tovik_export.h"

// Platform layer: the framework's string, the code page, number text
#include "cstring.h"
#include "mbtext.h"
#include "numtext.h"
#include "resstrings.h"
#include "exitcleanup.h"
#include "file_io.h"
#include "dir_search.h"
#include "process.h"
#include "app_profile.h"
#include "screen_types.h"
#include "cdwordarray.h"

// Core frame
#include "sys_string.h"
#include "ssm_check.h"
#include "ssm.h"
#include "sys_exception.h"
#include "sys_translation.h"
#include "sys_scan.h"
#include "sys_str_pattern.h"

// Events
#include "scc_event.h"
#include "scc_iterator.h"

// Containers
#include "scc_hash.h"
#include "scc_shared.h"
#include "scc_array.h"
#include "scc_array_iterator.h"
#include "scc_list.h"
#include "scc_refdlist.h"
#include "scc_safe_list.h"
#include "scc_map.h"

// Observable collections
#include "sys_filter.h"
#include "scc_collection.h"
#include "sys_std_interface.h"
#include "scc_saved_handles.h"
#include "scc_nsync_client.h"

// Files
#include "sfm_file_path.h"
#include "sfm_file.h"
#include "sfm_directory.h"
#include "sfm_manager.h"
#include "sfm_message_db.h"

// Values and properties
#include "scc_variant.h"
#include "scc_convertor.h"
#include "scc_property.h"

// Geometry
#include "sys_geometry_units.h"
#include "sys_point.h"
#include "sys_shapes.h"
#include "sys_transform.h"
#include "sys_geom_node.h"
#include "sys_text_records.h"

// Display
#include "ui_draw_area.h"
#include "cdynamic.h"
#include "ui_palette_convertor.h"
#include "ui_svg_draw_area.h"

// Units
#include "sys_convert.h"

// Replay recorder
#include "sys_test_repeater.h"

#endif  // TOVIK_H
