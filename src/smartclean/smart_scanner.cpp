#include "smartclean/smart_scanner.h"

#include "smartclean/category_scan.h"

#include <utility>

namespace kestavon {

SmartScanner::SmartScanner(HostLayout layout, SmartScannerTools tools, ScanPatience patience)
    : m_layout(std::make_shared<const HostLayout>(std::move(layout)))
    , m_tools(std::move(tools))
    , m_patience(patience)
{
}

std::vector<CleanupCandidate> SmartScanner::scanCategory(
    JunkCategory category, const std::stop_token& stop) const
{
    return std::make_shared<CategoryScan>(m_layout, m_tools, category, m_patience)->run(stop);
}

} // namespace kestavon
