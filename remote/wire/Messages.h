// The kinds of messages between the mixer and a state that follows it from another process.
#pragma once

namespace quillmere::wire {

/// Every message is an object that says under this key what it is.
constexpr const char* type = "type";

// From the mixer.
constexpr const char* fields = "fields";        ///< values: all fields by name. Before any other.
constexpr const char* field = "field";          ///< name, value: a field that has changed.
constexpr const char* performed = "performed";  ///< One call has been performed, after whatever it changed.

// To the mixer.
constexpr const char* call = "call";  ///< name, arguments.

}  // namespace quillmere::wire
