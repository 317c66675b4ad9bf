#pragma once

#include "Places/DiskBus.h"
#include "Places/DiskService.h"

namespace brellin {

/// The disk service of Linux desktops, UDisks2.
class UDisksService : public DiskService {
public:
    /// The bus must outlive it.
    explicit UDisksService(DiskBus &bus) : m_bus(bus) {}

    Result<std::map<std::string, DiskFacts>> facts() override;
    Result<void> eject(const std::string &device) override;

private:
    DiskBus &m_bus;
};

} // namespace brellin
