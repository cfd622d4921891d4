#include <Vokit/LogCategory>

#include <QCoreApplication>

#include <algorithm>

namespace vo {

namespace {

struct CategoryData
{
    ELogCategory category;
    const char *name;
};

constexpr CategoryData sCategoryData[] = {
    {LogCatNone, QT_TRANSLATE_NOOP("ActionLog", "None")},
    {LogCatAccess, QT_TRANSLATE_NOOP("ActionLog", "Access")},
    {LogCatLogon, QT_TRANSLATE_NOOP("ActionLog", "Logon & Logoff")},
    {LogCatUsersGroups, QT_TRANSLATE_NOOP("ActionLog", "User & Groups")},
    {LogCatAuthorize, QT_TRANSLATE_NOOP("ActionLog", "Authorize")},
    {LogCatSoftwareUpdates, QT_TRANSLATE_NOOP("ActionLog", "Software updates")},
    {LogCatCameraSettings, QT_TRANSLATE_NOOP("ActionLog", "Camera Settings")},
    {LogCatWebBrowser, QT_TRANSLATE_NOOP("ActionLog", "Web browser")},
    {LogCatNetworkMessages, QT_TRANSLATE_NOOP("ActionLog", "Network messages")},
    {LogCatSoftbuttons, QT_TRANSLATE_NOOP("ActionLog", "Softbuttons")},
    {LogCatFormatting, QT_TRANSLATE_NOOP("ActionLog", "Formatting")},
    {LogCatAppConfiguration, QT_TRANSLATE_NOOP("ActionLog", "Voco configuration")},
    {LogCatQuit, QT_TRANSLATE_NOOP("ActionLog", "Quit")},
    {LogCatLayoutManager, QT_TRANSLATE_NOOP("ActionLog", "Layout Manager")},
    {LogCatDisplayScaling, QT_TRANSLATE_NOOP("ActionLog", "Display scaling")},
    {LogCatContextMenus, QT_TRANSLATE_NOOP("ActionLog", "Context menus")},
    {LogCatUploadAssistant, QT_TRANSLATE_NOOP("ActionLog", "Upload Assistant")},
    {LogCatActionLog, QT_TRANSLATE_NOOP("ActionLog", "Action log")},
    {LogCatEventSearch, QT_TRANSLATE_NOOP("ActionLog", "Event Search")},
    {LogCatExport, QT_TRANSLATE_NOOP("ActionLog", "Export")},
    {LogCatLocalArchive, QT_TRANSLATE_NOOP("ActionLog", "Local archive")},
    {LogCatVideoSearch, QT_TRANSLATE_NOOP("ActionLog", "Video search")},
    {LogCatPlay, QT_TRANSLATE_NOOP("ActionLog", "Play")},
    {LogCatViewing, QT_TRANSLATE_NOOP("ActionLog", "Viewing")},
    {LogCatAlarm, QT_TRANSLATE_NOOP("ActionLog", "Alarm")},
    {LogCatSequencer, QT_TRANSLATE_NOOP("ActionLog", "Sequencer")},
    {LogCatLayout, QT_TRANSLATE_NOOP("ActionLog", "Layout")},
    {LogCatAudio, QT_TRANSLATE_NOOP("ActionLog", "Audio")},
    {LogCatPtz, QT_TRANSLATE_NOOP("ActionLog", "PTZ")},
    {LogCatPtzPost, QT_TRANSLATE_NOOP("ActionLog", "PTZ post")},
    {LogCatPtzConfig, QT_TRANSLATE_NOOP("ActionLog", "PTZ config")},
    {LogCatPtzPostConfig, QT_TRANSLATE_NOOP("ActionLog", "PTZ post config")},
    {LogCatSignalOuts, QT_TRANSLATE_NOOP("ActionLog", "Signal outs")},
    {LogCatError, QT_TRANSLATE_NOOP("ActionLog", "Error")},
    {LogCatRemoteControl, QT_TRANSLATE_NOOP("ActionLog", "Remote control")},
    {LogCatDevices, QT_TRANSLATE_NOOP("ActionLog", "Devices")},
    {LogCatSystem, QT_TRANSLATE_NOOP("ActionLog", "System")},
};

QString nameOf(ELogCategory category)
{
    const auto *const row =
        std::find_if(std::begin(sCategoryData), std::end(sCategoryData),
                     [category](const CategoryData &data) { return data.category == category; });
    if (row == std::end(sCategoryData))
        return nameOf(LogCatNone);
    return QCoreApplication::translate("ActionLog", row->name);
}

} // namespace

LogCategory::LogCategory(ELogCategory category)
    : mCategory(category)
    , mName(nameOf(category))
{}

QStringList LogCategory::categoryNames()
{
    QStringList names;
    for (const CategoryData &data : sCategoryData)
        names.append(nameOf(data.category));
    names.sort();
    return names;
}

} // namespace vo
