#pragma once

#include <Vokit/vokit_export.h>

#include <QString>
#include <QStringList>

namespace vo {

/// What an action is about. The values are four characters each and stand in the code of clients.
enum ELogCategory : quint32 {
    LogCatNone = 0x20202020,
    LogCatAccess = 0x41636573,
    LogCatLogon = 0x4C6F676E,
    LogCatUsersGroups = 0x55734772,
    LogCatAuthorize = 0x41757468,
    LogCatSoftwareUpdates = 0x536F5570,
    LogCatCameraSettings = 0x63536574,
    LogCatWebBrowser = 0x63576542,
    LogCatNetworkMessages = 0x4E4D7367,
    LogCatSoftbuttons = 0x536F6642,
    LogCatFormatting = 0x466F726D,
    LogCatAppConfiguration = 0x61707043,
    LogCatQuit = 0x61516974,
    LogCatLayoutManager = 0x6C4D6772,
    LogCatDisplayScaling = 0x44737053,
    LogCatContextMenus = 0x634D656E,
    LogCatUploadAssistant = 0x75417373,
    LogCatActionLog = 0x614C6F67,
    LogCatEventSearch = 0x53726368,
    LogCatExport = 0x45787074,
    LogCatLocalArchive = 0x4C6F4172,
    LogCatVideoSearch = 0x53725669,
    LogCatPlay = 0x506C6179,
    LogCatViewing = 0x56696577,
    LogCatAlarm = 0x416C726D,
    LogCatSequencer = 0x53657175,
    LogCatLayout = 0x4C61796F,
    LogCatAudio = 0x41756469,
    LogCatPtz = 0x6C50545A,
    LogCatPtzPost = 0x7050545A,
    LogCatPtzConfig = 0x6C507443,
    LogCatPtzPostConfig = 0x70507443,
    LogCatSignalOuts = 0x6353674F,
    LogCatError = 0x45726F72,
    LogCatRemoteControl = 0x436F6E74,
    LogCatDevices = 0x44657669,
    LogCatSystem = 0x53797374
};

/// A category with its name in the user's language. Two are equal when their values are.
class VOKIT_EXPORT LogCategory
{
public:
    /// A value that no enumerator has is kept, under the name of LogCatNone.
    LogCategory(ELogCategory category);

    ELogCategory category() const { return mCategory; }
    const QString &name() const { return mName; }

    bool operator==(const LogCategory &other) const { return mCategory == other.mCategory; }
    bool operator!=(const LogCategory &other) const { return !(*this == other); }

    /// All names in the user's language, that of LogCatNone included, sorted by code unit.
    static QStringList categoryNames();

private:
    ELogCategory mCategory;
    QString mName;
};

} // namespace vo
