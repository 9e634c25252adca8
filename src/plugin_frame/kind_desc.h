// KindDesc: the descriptor of a plugin kind of this library. A node makes one static object of it, which
// declares the parameters and links itself into the library's list while the library is loaded.
#pragma once

#include "plugin_frame/descriptor_list.h"

#include <ombrix/plugin_kind.h>

namespace nezaiva {

template <class Kind, class Params = KindParams<Kind>>
class KindDesc : public PluginKindDesc<Kind, Params> {
public:
    // The parameters are declared before anybody can find the descriptor.
    KindDesc() { linkDescriptor(this); }
};

} // namespace nezaiva
