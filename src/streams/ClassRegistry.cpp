#include "ClassRegistry.h"

#include "../foundation/Closing.h"

#include <algorithm>

namespace tarn {
namespace {
// The length is counted once, not at every comparison.
ConstString<char> measured(const char* name)
{
    const ConstString<char> text(name ? name : "");
    return ConstString<char>(text.data(), text.length());
}
} // namespace

bool ShorterFirst::operator()(const ConstString<char>& a, const ConstString<char>& b) const
{
    return std::char_traits<char>::compare(a.data(), b.data(), std::min(a.length(), b.length())) < 0;
}

ClassRegistry& ClassRegistry::get()
{
    static auto& registry = *new ClassRegistry;
    return registry;
}

void ClassRegistry::add(const char* name, Creator creator)
{
    enter(all_.emplace_back(Registration{.name = measured(name), .traits = {.create = creator}, .ownName = {}}));
}

void ClassRegistry::add(const char* name, const detail::ClassTraits& traits, const std::type_info& type,
                        const void* owner)
{
    Registration& registration = all_.emplace_back(
        Registration{.name = {}, .traits = traits, .type = &type, .owner = owner, .ownName = name ? name : ""});
    registration.name = measured(registration.ownName.c_str());
    enter(registration);
}

void ClassRegistry::enter(Registration& registration)
{
    ++version_;
    const Registration& first = *byName_.try_emplace(registration.name, &registration).first->second;
    if (!registration.type)
        return;
    registration.isShadowed =
        first.type && *first.type != *registration.type && first.name.length() == registration.name.length();
    byType_.try_emplace(registration.type, &registration);
    byTypeName_.try_emplace(registration.type->name(), &registration);
}

void ClassRegistry::remove(const void* owner) noexcept
{
    ++version_;
    const auto isOwned = [owner](const auto& entry) { return entry.second->owner == owner; };
    std::erase_if(byName_, isOwned);
    std::erase_if(byType_, isOwned);
    std::erase_if(byTypeName_, isOwned);
    all_.remove_if([owner](const Registration& registration) { return registration.owner == owner; });
    // What had to stand back behind those that went counts now.
    closeQuietly([this] {
        for (Registration& registration : all_)
            enter(registration);
    });
}

const ClassRegistry::Registration* ClassRegistry::find(const char* name) const
{
    const auto found = byName_.find(measured(name));
    return found != byName_.end() ? found->second : nullptr;
}

const ClassRegistry::Registration* ClassRegistry::firstOf(const std::type_info& type) const
{
    if (const auto found = byType_.find(&type); found != byType_.end())
        return found->second;
    // A type of an unnamed namespace equals no other, whatever its text.
    const auto found = byTypeName_.find(type.name());
    return found != byTypeName_.end() && *found->second->type == type ? found->second : nullptr;
}
} // namespace tarn
