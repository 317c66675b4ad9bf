#include "App/Start/WindowComposition.h"

#include "App/ProgramFolders.h"
#include "Features/ThumbnailCache.h"

namespace brellin {

WindowComposition::WindowComposition(Services &services, DesktopSettings &desktop)
    : m_services(services)
    , m_desktop(desktop)
    , m_workers(services.volumes())
    , m_sizes(services.settings(), services.volumes(), services.clock())
    , m_colors(services.settings())
    , m_pins(services.settings(), services.folders())
    , m_disks(m_bus)
    , m_volumeList(m_mounts, m_disks)
    , m_servers(services.settings(), services.processes())
    , m_trash(services.folders().trash.parent_path(), services.volumes(), services.trash(), services.files())
    , m_decoder(services.processes(), programFolder() / "brellin-bild")
    , m_thumbnails(services.settings(), services.volumes(), m_decoder, ThumbnailCache::usualFolder())
    , m_images(m_thumbnails)
    , m_workspace(services.settings(), DesktopEnvironment::ofThisUser(services.folders().home))
    , m_agent(services.forAgent())
    , m_model(services.forAgent())
{
}

WindowServices WindowComposition::forWindows()
{
    const BrowserServices panes{m_services.settings(),
                                m_services.volumes(),
                                m_services.files(),
                                m_services.folders(),
                                m_workers,
                                m_sizes,
                                m_colors,
                                m_services.tagSearch()};
    const AgentPorts agent{m_agent, m_model, m_services.forAgent(), m_workspace, m_pasteboard, {}};
    return {panes, agent, m_pins, m_volumeList, m_servers, m_trash, m_images, m_decoder, m_desktop, m_services.clock()};
}

void WindowComposition::start()
{
    m_volumeList.start();
    m_agent.start();
}

} // namespace brellin
