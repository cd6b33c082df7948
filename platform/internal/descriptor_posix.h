#pragma once

#include <utility>

#include <unistd.h>

namespace tollivar::platform {

/// One descriptor of the system, closed with the object; -1 is none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int value) : m_value(value) {}
    Descriptor(Descriptor &&other) noexcept : m_value(std::exchange(other.m_value, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        close();
        m_value = std::exchange(other.m_value, -1);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] int get() const { return m_value; }
    /// Leaves it to the caller, who closes it.
    [[nodiscard]] int take() { return std::exchange(m_value, -1); }
    [[nodiscard]] bool isOpen() const { return m_value >= 0; }
    void close()
    {
        if (isOpen()) {
            ::close(std::exchange(m_value, -1));
        }
    }

private:
    int m_value = -1;
};

} // namespace tollivar::platform
