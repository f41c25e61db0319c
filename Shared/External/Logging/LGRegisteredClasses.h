#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <typeindex>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// A class with a log level of its own.
template <class Class>
concept LGLeveledClass = requires(std::int32_t level) {
    { Class::lgLogLevel() } -> std::convertible_to<std::int32_t>;
    Class::lgSetLogLevel(level);
};

/// The classes whose log level can be asked for and set at run time. C++ doesn't list its classes,
/// so each of them is made known once.
/// Errors: of a class that isn't known the level is -1, and setting it does nothing.
/// Thread: main queue.
class LGRegisteredClasses {
public:
    static constexpr std::int32_t kNoLevel = -1;

    template <LGLeveledClass Class>
    void add(std::string_view name) {
        if (!isRegisteredClass(typeid(Class)))
            classes_.push_back({typeid(Class), name,
                                [] { return static_cast<std::int32_t>(Class::lgLogLevel()); },
                                [](std::int32_t level) { Class::lgSetLogLevel(level); }});
    }

    bool isRegisteredClass(std::type_index type) const { return find(type) != nullptr; }
    std::vector<std::type_index> registeredClasses() const;
    std::vector<std::string_view> registeredClassNames() const;
    std::int32_t logLevelForClass(std::type_index type) const { return levelOf(find(type)); }
    std::int32_t logLevelForClassWithName(std::string_view name) const {
        return levelOf(find(name));
    }
    void setLogLevel(std::int32_t level, std::type_index forClass) { set(find(forClass), level); }
    void setLogLevel(std::int32_t level, std::string_view forClassWithName) {
        set(find(forClassWithName), level);
    }

private:
    struct Entry {
        std::type_index type;
        std::string_view name;
        std::int32_t (*level)();
        void (*setLevel)(std::int32_t);
    };
    const Entry* find(std::type_index type) const;
    const Entry* find(std::string_view name) const;
    static std::int32_t levelOf(const Entry* entry) { return entry ? entry->level() : kNoLevel; }
    static void set(const Entry* entry, std::int32_t level) {
        if (entry != nullptr)
            entry->setLevel(level);
    }

    std::vector<Entry> classes_;
};

}  // namespace vantor::inline VANTOR_MODULE
