// Everything that a plug-in library or a host includes. To write a plug-in library, define getLibDesc, derive
// each kind from a base of plugin.h, give it an identity and a table of parameters (plugin_kind.h,
// parameter_table.h), and make a descriptor of it. To write a host, define what is marked OMBRIX_API and
// what is abstract in renderer.h, context.h, gpu_source.h and plugin_desc.h.
#pragma once

#include <ombrix/char_string.h>
#include <ombrix/context.h>
#include <ombrix/exception_msg.h>
#include <ombrix/gpu_source.h>
#include <ombrix/inputs.h>
#include <ombrix/mapping_interfaces.h>
#include <ombrix/material_interfaces.h>
#include <ombrix/memory.h>
#include <ombrix/parameter_table.h>
#include <ombrix/parameters.h>
#include <ombrix/plugin.h>
#include <ombrix/plugin_base.h>
#include <ombrix/plugin_desc.h>
#include <ombrix/plugin_kind.h>
#include <ombrix/ptr_array.h>
#include <ombrix/renderer.h>
#include <ombrix/texture_interfaces.h>
#include <ombrix/types.h>
