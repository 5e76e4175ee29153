// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/designed_pages.h"

namespace veltro {
namespace {

constexpr QFont::Weight normal = QFont::Normal;
constexpr QFont::Weight medium = QFont::Medium;
constexpr QFont::Weight semibold = QFont::DemiBold;
constexpr QFont::Weight bold = QFont::Bold;

PageRows designParts()
{
    return {.page = "DesignParts",
            .texts = {{"Batch", 11, semibold, "inkTertiary", 1.2},
                      {"Paste many links", 22, semibold, "ink"},
                      {"Recent", 20, semibold, "ink"},
                      {"1080p", 11, semibold, "white", 0.4},
                      {"H.264", 11, semibold, "accent", 0.4},
                      {"Primary", 16, semibold, "white"},
                      {"Secondary", 16, semibold, "ink"},
                      {"Ghost", 16, semibold, "ink"},
                      {"Success", 16, semibold, "white"}},
            .boxes = {{"1080p^", any, any, 6, "accent"},
                      {"H.264^", any, any, 6, "accent/0.08"},
                      {"Primary^^", any, any, 14, "accent", "clear", 0},
                      {"Secondary^^", any, any, 14, "card", "hairline", 1},
                      {"Ghost^^", any, any, 14, "clear", "clear", 0},
                      {"Success^^", any, any, 14, "success", "clear", 0}},
            .insets = {{"1080p^", "1080p", 8, 4, 8, 4},
                       {"Ghost^^", "Ghost", 20, 14, 20, 14},
                       {"Secondary^^", "@clipboard", 20}},
            .motions = {{"Primary^^", 120, Curve::easeOut}}};
}

PageRows sidebars()
{
    return {.page = "Sidebars",
            .texts = {{"#booting > Veltro", 16, semibold, "ink"},
                      {"#booting > Booting…", 11, medium, "inkSecondary"},
                      {"#ready > Engine ready", 11, medium, "inkSecondary"},
                      {"#ready > #tab1 > 3", 11, bold, "white"},
                      {"#ready > #tab0 > Home", 13, medium, "ink"},
                      {"#ready > #tab1 > Queue", 13, medium, "ink"},
                      {"#ready > #tab2 > Library", 13, semibold, "ink"},
                      {"#ready > #tab3 > Settings", 13, medium, "ink"}},
            .boxes = {{"#booting > #appIcon", 28, 28, 8, "accent"},
                      {"#booting > #engineDot", 8, 8, 4, "warning"},
                      {"#ready > #engineDot", 8, 8, 4, "success"},
                      {"#ready > 3^", any, any, any, "accent"}},
            .insets = {{"#booting", "#appIcon", 14, 10},
                       {"#ready", "#engineDot", 14},
                       {"#ready", "Engine ready", any, any, any, 8},
                       {"#crowded > 12345^", "12345", 6, 2, 6, 2}},
            .icons = {{"#ready > #tab0 > @house", 17, "inkSecondary"},
                      {"#ready > #tab1 > @arrow.down.circle", 17, "inkSecondary"},
                      {"#ready > #tab2 > @square.stack", 17, "accent"},
                      {"#ready > #tab3 > @slider.horizontal.3", 17, "inkSecondary"}}};
}

PageRows banners()
{
    return {.page = "Banners",
            .texts = {{"You're offline. Queued downloads will resume.", 13, semibold, "white"},
                      {"#startedBanner > Download started", 13, semibold, "ink"},
                      {"#startedBanner > A walk along the harbour", 12, normal, "inkSecondary"},
                      {"#startedBanner > View queue", 11, semibold, "accent"},
                      {"#completedBanner > Saved to your library", 13, semibold, "ink"},
                      {"#completedBanner > A walk along the harbour", 12, normal, "inkSecondary"},
                      {"#completedBanner > Open", 12, semibold, "white"}},
            .boxes = {{"#offlineGround", any, any, 10, "ink"},
                      {"#startedBanner", 360, any, 14, "card", "hairline"},
                      {"#completedBanner", 360, any, 14, "card", "hairline"},
                      {"#savedMark", 28, 28, 14, "success/0.14"},
                      {"#openLibrary", any, any, any, "accent"},
                      {"#dismissCompleted", 26, 26, any, "clear"}},
            .insets = {{"#networkBanner", "#offlineGround", 12, 6, 12, 0},
                       {"#offlineGround", "@globe.slash", 16},
                       {"#offlineGround", "You're offline. Queued downloads will resume.", any, 10,
                        16, 10},
                       {"#startedBanner", "#startedSpinner", 16},
                       {"#startedBanner", "Download started", 16 + 16 + 12, 12},
                       {"#startedBanner", "@arrow.right", any, any, 16},
                       {"#completedBanner", "#savedMark", 16},
                       {"#completedBanner", "Saved to your library", 16 + 28 + 12, 12},
                       {"#completedBanner", "#dismissCompleted", any, any, 16},
                       {"#openLibrary", "Open", 14, 7, 14, 7}},
            .icons = {{"#savedMark > @checkmark", 14, "success"},
                      {"#startedBanner > @arrow.right", 14, "accent"},
                      {"#dismissCompleted > @xmark", 11, "inkTertiary"},
                      {"#offlineGround > @globe.slash", 16, "white"}},
            .shadows = {{"#startedBanner", 0.1, 16, 8}, {"#completedBanner", 0.1, 16, 8}}};
}

PageRows homeParts()
{
    return {.page = "HomeParts",
            .texts = {{"#pill > Use copied link?", 13, semibold, "ink"},
                      {"#pill > video.example", 11, normal, "inkTertiary"},
                      {"#pill > Use", 13, semibold, "white"},
                      {"#saveFilled > Save", 16, semibold, "white"},
                      {"#saveWorking > Rummaging…", 13, semibold, "white"},
                      {"#saveConfirmed > Saved", 16, semibold, "white"}},
            .boxes = {{"#pill", any, any, any, "card", "hairline"},
                      {"#pill > #pillMark", 32, 32, 16, "ink"},
                      {"#useCopiedLink", any, any, any, "accent"},
                      {"#dismissCopiedLink", 28, 28, any, "clear"},
                      {"#saveFilled", any, any, 14, "accent", "clear", 0}},
            .insets = {{"#useCopiedLink", "Use", 12, 7, 12, 7},
                       {"#saveFilled", "Save", any, 14, any, 14}},
            .icons = {{"#pillMark > @clipboard", 14, "white"},
                      {"#dismissCopiedLink > @close", 11, "inkTertiary"},
                      {"#saveFilled > @arrowRight", 14, "white"},
                      {"#saveConfirmed > @checkmark", 16, "white"}},
            .shadows = {{"#pill", 0.06, 16, 6}},
            .motions = {{"#pill", 450, Curve::spring},
                        {"#saveConfirmed", 180, Curve::easeOut},
                        {"#saveFilled", 220, Curve::easeIn},
                        {"#saveWorking", 550, Curve::easeInOut}}};
}

PageRows home()
{
    return {.page = "WindowHomeFull",
            .texts = {{"Video downloader · 1,800+ sites", 11, semibold, "inkTertiary", 1.2},
                      {"Save any video.\nFrom any site.", 64, bold, "ink", -1.9},
                      {"Drop a link or paste one below. Pick a quality. Save it forever, right "
                       "next to your other files.",
                       18, normal, "inkSecondary"},
                      {"#chip0 > 4K", 13, semibold, "ink"},
                      {"#chip1 > 1080p", 13, semibold, "white"},
                      {"#chip2 > 720p", 13, semibold, "ink"},
                      {"#chip3 > 480p", 13, semibold, "ink"},
                      {"#chip4 > Audio", 13, semibold, "ink"},
                      {"Recent", 20, semibold, "ink"},
                      {"#recent0 > Tides of the northern coast", 14, semibold, "ink"},
                      {"#recent0 > example.com", 12, normal, "inkTertiary"},
                      {"How it works", 20, semibold, "ink"},
                      {"0", 13, semibold, "accent"},
                      {"Paste a URL", 16, semibold, "ink"},
                      {"From any video or audio page. The address bar in your browser is all you "
                       "need.",
                       13, normal, "inkSecondary"},
                      {"Pick a quality", 16, semibold, "ink"},
                      {"Pick the resolution, format, or extract just the audio.", 13, normal,
                       "inkSecondary"},
                      {"Saved on your Mac", 16, semibold, "ink"},
                      {"Files land in your Downloads folder. Play, share, or move them anywhere.",
                       13, normal, "inkSecondary"}},
            .boxes = {{"#linkCard", 660, any, any, "card", "accent"}, // which has the focus
                      {"#chip0", any, any, any, "sunken", "hairline"},
                      {"#chip1", any, any, any, "accent", "clear", 0},
                      {"#recent0", any, any, any, "card", "hairline"},
                      {"Paste a URL^^", any, any, any, "card", "hairline"}},
            .insets = {{"#chip0", "4K", 14, 7, 14, 7},
                       {"#recent0", "#picture", 12, 12, 12},
                       {"Paste a URL^^", "Paste a URL", 18, any, 18},
                       {"Paste a URL^^", "0", 18, 18}},
            .icons = {{"#linkCard > @link", 18, "inkTertiary"},
                      {"#clear > @close", 14, "inkTertiary"},
                      {"#pasteAndSave > @clipboard", 14, "ink"},
                      {"#pasteMany > @link", 14, "ink"}},
            .motions = {{"#offlineSlot", 250, Curve::easeOut},
                        {"#startedSlot", 350, Curve::spring},
                        {"#completedSlot", 350, Curve::spring}}};
}

PageRows queue()
{
    return {
        .page = "QueueFull",
        .texts = {{"Downloads", 38, bold, "ink", -0.8},
                  {"Clear finished", 12, semibold, "ink"},
                  {"#active > ACTIVE", 11, normal, "inkTertiary", 1.1},
                  {"#queued > QUEUED", 11, normal, "inkTertiary", 1.1},
                  {"#done > DONE", 11, normal, "inkTertiary", 1.1},
                  {"#active > 6", 20, semibold, "ink"},
                  {"#queueRow > A walk along the harbour", 15, semibold, "ink"},
                  {"#queueRow > video.example", 12, normal, "inkTertiary"},
                  {"Downloading", 12, semibold, "accent"},
                  {"Processing", 12, semibold, "warning"},
                  {"Queued", 12, semibold, "neutral"},
                  {"Done", 12, semibold, "success"},
                  {"Failed", 12, semibold, "danger"},
                  {"Cancelled", 12, semibold, "neutral"},
                  {"31.4 MB", 12, normal, "inkSecondary"},
                  {"of 84.3 MB", 12, normal, "inkTertiary"},
                  {"~19s", 12, normal, "inkTertiary"},
                  {"Segment 3/12", 12, normal, "inkSecondary"},
                  {"Retry", 12, semibold, "accent"}},
        .boxes = {{"#counters", 900, any, any, "card", "hairline"},
                  {"#queued > #rule", 1, 28, 0, "hairline"},
                  {"#queued", 300, any, any, "none"},
                  {"#queueRow", 900, any, any, "card", "hairline"},
                  {"#queueRow > #tile", 40, 40, any, "sunken"},
                  {"#queueRow > #bar", any, any, any, "sunken"},
                  {"#queueRow > #filled", any, any, any, "ink"},
                  {"Retry^^", any, any, any, "accent/0.1"}},
        .insets = {{"#queueRow", "#tile", 18},
                   {"#queueRow", "A walk along the harbour", any, 18},
                   {"#queueRow", "#detail", any, any, any, 18},
                   {"#queueRow", "#cancel", any, any, 18},
                   {"Retry^^", "@arrow.clockwise", 10},
                   {"Retry^^", "Retry", any, 6, 10, 6}},
        .icons = {{"#tile > @film", 18, "ink"},
                  {"#cancel > @xmark.circle.fill", 22, "inkTertiary"},
                  {"#clearFinished > @close", 12, "ink"},
                  {"@play.fill", 14, "white"}},
        .motions = {{"#queueRow > #filled", 300, Curve::easeOut}},
        .height = 1700,
    };
}

PageRows emptyQueue()
{
    return {.page = "QueueEmpty",
            .texts = {{"Nothing in the queue", 22, semibold, "ink"},
                      {"Paste a link on the Home tab. Active and finished downloads show up here.",
                       14, normal, "inkSecondary"},
                      {"#active > 0", 20, semibold, "ink"}}};
}

PageRows library()
{
    return {.page = "LibraryScreen",
            .texts = {{"Saved on this Mac", 11, semibold, "inkTertiary", 1.2},
                      {"Library", 38, bold, "ink", -0.8},
                      {"#searchField > Search", 14, normal, "inkTertiary"},
                      {"12:34", 11, normal, "white"},
                      {"How a bell is cast", 14, normal, "ink"},
                      {"The Workshop", 11, normal, "inkTertiary"},
                      {"Show in Finder", 12, semibold, "ink"},
                      {"Open", 12, semibold, "ink"}},
            .boxes = {{"#searchField", any, any, any, "card", "hairline"},
                      {"#lengthBadge", any, any, any, "black/0.7"},
                      {"Night train^ > #outline", any, any, any, "card", "hairline"},
                      {"@trash^^", 32, 32, any, "card"},
                      {"#marquee", any, any, any, "accent/0.14", "accent/0.75"}},
            .insets = {{"#searchField", "@magnifyingglass", 14},
                       {"#searchField", "Search^", any, 10, 14, 10},
                       {"#lengthBadge", "12:34", 6, 3, 6, 3}},
            .icons = {{"#searchField > @magnifyingglass", 17, "inkTertiary"},
                      {"Show in Finder^ > @folder", 15, "ink"},
                      {"Open^ > @play.fill", 15, "ink"},
                      {"@trash", 14, "danger"}}};
}

PageRows libraryChoices()
{
    return {.page = "LibraryMany",
            .texts = {{"20 items selected", 22, normal, "ink"},
                      {"135.8 MB", 13, normal, "inkSecondary"},
                      {"20 items selected^ > Click any tile to play it here.", 13, normal,
                       "inkTertiary"},
                      {"Delete 20 items", 13, semibold, "danger"}},
            .boxes = {{"Night train^ > #outline", any, any, any, "card", "accent", 2}},
            .icons = {{"@square.grid.2x2.fill", 45, "inkTertiary"},
                      {"Delete 20 items^ > @trash", 16, "danger"}}};
}

PageRows emptyLibrary()
{
    return {
        .page = "LibraryEmpty",
        .texts = {{"Empty library", 22, semibold, "ink"},
                  {"Anything you save lands here. Paste a link on the Home tab or drag one onto "
                   "the window.",
                   14, normal, "inkSecondary"},
                  {"Pick a clip", 17, semibold, "ink"},
                  {"Click any tile to play it here.", 13, normal, "inkTertiary"}},
        .icons = {{"@play", 36, "neutral"}, {"@square.grid.2x2.fill", 50, "inkTertiary"}}};
}

PageRows picker()
{
    return {
        .page = "PickerMixed",
        .texts = {{"#title", 16, semibold, "ink"},
                  {"#source", 12, normal, "inkTertiary"},
                  {"All", 13, semibold, "ink"},
                  {"All^ > 11", 13, semibold, "ink"},
                  {"Video", 13, medium, "inkTertiary"},
                  {"Audio", 13, medium, "inkTertiary"},
                  {"#pickerRow > #label", 14, semibold, "ink"},
                  {"#pickerRow > MP4", 11, normal, "inkSecondary"},
                  {"#pickerRow > 17.8 MB", 11, normal, "inkTertiary"}},
        .boxes = {{"#thumbnailFrame", 96, 64, 10, "sunken"}, {"#sections", 180, any, any, "none"}},
        .insets = {{"#pickerRow", "#label", 14, 14},
                   {"#pickerRow", "MP4", 14, any, any, 14},
                   {"#pickerRow", "@arrow.down.circle.fill", any, any, 14}},
        .icons = {{"#thumbnailFrame > @play.fill", 27, "inkTertiary"},
                  {"#close > @xmark.circle.fill", 22, "inkTertiary"},
                  {"#pickerRow > @arrow.down.circle.fill", 22, "accent"}}};
}

PageRows batch()
{
    return {.page = "WindowBatch",
            .texts = {{"#sheet^ > Batch", 11, semibold, "inkTertiary", 1.2},
                      {"#sheet^ > Paste many links", 22, semibold, "ink"},
                      {"0 links detected", 13, semibold, "ink"},
                      {"One per line · saved at your default quality", 11, normal, "inkTertiary"},
                      {"#batchPaste > Paste", 16, semibold, "ink"},
                      {"#batchQueue > Queue 0", 16, semibold, "white"}},
            .boxes = {{"Batch^^^ > #sheet", 560, 460, any, "page"},
                      {"#batchClose", 36, 36, 18, "card", "hairline"},
                      {"#batchQueue", any, any, 14, "accent", "clear", 0}},
            .icons = {{"#batchClose > @close", 14, "ink"},
                      {"#batchPaste > @clipboard", 12, "ink"},
                      {"#batchQueue > @arrowRight", 12, "white"}}};
}

PageRows settings()
{
    return {
        .page = "SettingsSites",
        .texts = {{"Default quality", 13, semibold, "inkSecondary"},
                  {"Quality", 13, normal, "ink"},
                  {"Best", 13, normal, "ink"},
                  {"Extract audio by default", 13, normal, "ink"},
                  {"Audio format", 13, normal, "ink"},
                  {"M4A", 13, normal, "ink"},
                  {"Subtitles", 13, semibold, "inkSecondary"},
                  {"Download subtitles", 13, normal, "ink"},
                  {"Languages (en, nl, es)", 13, normal, "ink"},
                  {"Output template", 13, semibold, "inkSecondary"},
                  {"Network", 13, semibold, "inkSecondary"},
                  {"Wi-Fi only", 13, normal, "ink"},
                  {"Logged-in sites", 13, semibold, "inkSecondary"},
                  {"films.example", 13, bold, "ink"},
                  {"yesterday", 11, normal, "inkSecondary"},
                  {"Veltro", 13, semibold, "inkSecondary"},
                  {"Version", 13, normal, "ink"},
                  {"Engine", 13, normal, "ink"},
                  {"Embedded · on-device", 13, normal, "inkSecondary"},
                  {"Audio / video", 13, normal, "ink"},
                  {"Bundled toolkit", 13, normal, "inkSecondary"},
                  {"Storage", 13, normal, "ink"},
                  {"User Downloads folder", 13, normal, "inkSecondary"}},
        .icons = {{"@globe", 21, "inkSecondary"}, {"@trash", 17, "danger"}},
    };
}

PageRows settingsEnd()
{
    return {.page = "SettingsEnd",
            .texts = {{"Support", 13, normal, "accent"},
                      {"Privacy policy", 13, normal, "accent"},
                      {"Open-source notices", 13, normal, "accent"}}};
}

PageRows help()
{
    return {.page = "WindowHelp",
            .texts = {{"Veltro Support", 13, normal, "ink"},
                      {"Check for Updates…", 13, normal, "ink"},
                      {"About Veltro", 13, normal, "ink"}}};
}

PageRows settingsWindow()
{
    return {.page = "SettingsWindow",
            .texts = {{"Sign in to a site, then save its cookies so Veltro can reuse them. Saved "
                       "sites will appear here.",
                       13, normal, "inkSecondary"}},
            .boxes = {{"#settingsView", 560, 520, any, "none"}}};
}

PageRows engineError()
{
    return {.page = "WindowEngineError",
            .texts = {{"Engine error", 15, semibold, "ink"}, {"OK", 13, semibold, "white"}}};
}

}

const std::vector<PageRows> &designedPages()
{
    static const std::vector<PageRows> pages{
        designParts(), sidebars(),       banners(),        homeParts(),    home(),   queue(),
        emptyQueue(),  library(),        libraryChoices(), emptyLibrary(), picker(), batch(),
        settings(),    settingsWindow(), engineError(),    settingsEnd(),  help(),
    };
    return pages;
}

}
