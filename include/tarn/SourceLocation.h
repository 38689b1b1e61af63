#pragma once

#include <cstdint>

namespace tarn {
/// A place in a program's source, as `std::source_location`, which not all compilers have that make programs for one
/// DLL: SourceLocation::current() as a default argument is the place of the call.
class SourceLocation {
public:
    /// The place where it stands.
    static constexpr SourceLocation current(const char* file = __builtin_FILE(),
                                            const char* function = __builtin_FUNCTION(),
                                            std::uint_least32_t line = __builtin_LINE()) noexcept
    {
        return {file, function, line};
    }
    /// No place: empty names, line 0.
    constexpr SourceLocation() noexcept = default;

    /// As the compiler was told it.
    constexpr const char* file_name() const noexcept { return file_; }
    /// Without its class and arguments.
    constexpr const char* function_name() const noexcept { return function_; }
    /// Counts from 1.
    constexpr std::uint_least32_t line() const noexcept { return line_; }

private:
    constexpr SourceLocation(const char* file, const char* function, std::uint_least32_t line) noexcept
        : file_(file), function_(function), line_(line)
    {
    }

    const char* file_ = "";
    const char* function_ = "";
    std::uint_least32_t line_ = 0;
};
} // namespace tarn
