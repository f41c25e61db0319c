#include "Shared/External/Logging/LGRegisteredClasses.h"

#include <algorithm>

namespace vantor::inline VANTOR_MODULE {

const LGRegisteredClasses::Entry* LGRegisteredClasses::find(std::type_index type) const {
    const auto found = std::ranges::find(classes_, type, &Entry::type);
    return found == classes_.end() ? nullptr : &*found;
}

const LGRegisteredClasses::Entry* LGRegisteredClasses::find(std::string_view name) const {
    const auto found = std::ranges::find(classes_, name, &Entry::name);
    return found == classes_.end() ? nullptr : &*found;
}

std::vector<std::type_index> LGRegisteredClasses::registeredClasses() const {
    std::vector<std::type_index> types;
    for (const Entry& entry : classes_)
        types.push_back(entry.type);
    return types;
}

std::vector<std::string_view> LGRegisteredClasses::registeredClassNames() const {
    std::vector<std::string_view> names;
    for (const Entry& entry : classes_)
        names.push_back(entry.name);
    return names;
}

}  // namespace vantor::inline VANTOR_MODULE
