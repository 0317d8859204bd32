// The scripts as the browsers get them, each written out in full. A tab within one stands here as <TAB>.
#pragma once

#include <string>
#include <string_view>

namespace quillmere::scripttexts {

inline std::string withTabs(std::string text) {
  constexpr std::string_view mark = "<TAB>";
  for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at))
    text.replace(at, mark.size(), "\t");
  return text;
}

inline const std::string chromeQuery = withTabs(R"(if application "Google Chrome" is not running then return ""
tell application "Google Chrome"
    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to active tab of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to title of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
            set output to output & wIdx & "<TAB>" & tIdx & "<TAB>" & isActive & "<TAB>" & tTitle & "<TAB>" & tURL & linefeed
        end repeat
    end repeat
    return output
end tell)");

inline const std::string braveQuery = withTabs(R"(if application "Brave Browser" is not running then return ""
tell application "Brave Browser"
    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to active tab of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to title of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
            set output to output & wIdx & "<TAB>" & tIdx & "<TAB>" & isActive & "<TAB>" & tTitle & "<TAB>" & tURL & linefeed
        end repeat
    end repeat
    return output
end tell)");

inline const std::string arcQuery = withTabs(R"(if application "Arc" is not running then return ""
tell application "Arc"
    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to active tab of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to title of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
            set output to output & wIdx & "<TAB>" & tIdx & "<TAB>" & isActive & "<TAB>" & tTitle & "<TAB>" & tURL & linefeed
        end repeat
    end repeat
    return output
end tell)");

inline const std::string edgeQuery = withTabs(R"(if application "Microsoft Edge" is not running then return ""
tell application "Microsoft Edge"
    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to active tab of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to title of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
            set output to output & wIdx & "<TAB>" & tIdx & "<TAB>" & isActive & "<TAB>" & tTitle & "<TAB>" & tURL & linefeed
        end repeat
    end repeat
    return output
end tell)");

inline const std::string safariQuery = withTabs(R"(if application "Safari" is not running then return ""
tell application "Safari"
    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to current tab of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to name of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
            set output to output & wIdx & "<TAB>" & tIdx & "<TAB>" & isActive & "<TAB>" & tTitle & "<TAB>" & tURL & linefeed
        end repeat
    end repeat
    return output
end tell)");

/// Window 2, tab 7.
inline const std::string chromeActivation = R"(tell application "Google Chrome"
    activate
    try
        set index of window 2 to 1
        tell window 2 to set active tab index to 7
    end try
end tell)";

/// Window 2, tab 7.
inline const std::string braveActivation = R"(tell application "Brave Browser"
    activate
    try
        set index of window 2 to 1
        tell window 2 to set active tab index to 7
    end try
end tell)";

/// Window 2, tab 7.
inline const std::string arcActivation = R"(tell application "Arc"
    activate
    try
        set index of window 2 to 1
        tell window 2 to set active tab index to 7
    end try
end tell)";

/// Window 2, tab 7.
inline const std::string edgeActivation = R"(tell application "Microsoft Edge"
    activate
    try
        set index of window 2 to 1
        tell window 2 to set active tab index to 7
    end try
end tell)";

/// Window 2, tab 7.
inline const std::string safariActivation = R"(tell application "Safari"
    activate
    try
        set index of window 2 to 1
        tell window 2 to set current tab to tab 7
    end try
end tell)";

}  // namespace quillmere::scripttexts
