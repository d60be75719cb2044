// The 50 entry points of KSPassThru.dll, in binding order, in one list.
//
// From this list come the console's function table and its binder (ks_library.h) and the demo server's exports, so a
// prototype changes in one place. Each returns a signed 32-bit result, 0 for success. The names are exported
// undecorated. Entries with an empty parameter list are bound and never called; their shape is the maker's own.
#pragma once

#include <cstdint>

#include "link/ks_types.h"

// clang-format off
#define ORVC_KS_ENTRY_POINTS(ENTRY)                                                                                   \
    ENTRY(KSOpen, (std::uint32_t* handle, std::uint32_t* flags, KSEventCallback callback, std::uint32_t* outWord))    \
    ENTRY(KSClose, (std::uint32_t handle))                                                                            \
    ENTRY(KSStart, (std::uint32_t handle, const KSSocketAddress* address, std::uint32_t keptWord,                     \
                    const char* logonId, const char* password, std::uint32_t* outWord, std::uint32_t* adminFlag))     \
    ENTRY(KSStop, (std::uint32_t handle))                                                                             \
    ENTRY(KSDllVersion, (std::uint32_t* major, std::uint32_t* minor, std::uint32_t* build))                           \
    ENTRY(KSSetDebug, (std::uint32_t on))                                                                             \
    ENTRY(KSDisconnect, ())                                                                                           \
    ENTRY(KSCreateGroup, (std::uint32_t handle, const KSGroupRecord* group, std::uint32_t, std::uint32_t,             \
                          std::uint32_t one))                                                                         \
    ENTRY(KSDeleteGroup, (std::uint32_t handle, std::uint32_t groupId))                                               \
    ENTRY(KSGetGroupMembers, (std::uint32_t handle, std::uint32_t groupId))                                           \
    ENTRY(KSGetMessages, (std::uint32_t handle))                                                                      \
    ENTRY(KSSelectIntercom, ())                                                                                       \
    ENTRY(KSStartAudio, ())                                                                                           \
    ENTRY(KSSendAudio, ())                                                                                            \
    ENTRY(KSEndAudio, ())                                                                                             \
    ENTRY(KSPlayServerAudio, ())                                                                                      \
    ENTRY(KSGetGPIOValues, ())                                                                                        \
    ENTRY(KSSetGPIOValue, ())                                                                                         \
    ENTRY(KSiComCount, ())                                                                                            \
    ENTRY(KSFirstIcom, ())                                                                                            \
    ENTRY(KSNextIcom, ())                                                                                             \
    ENTRY(KSGetIcom, ())                                                                                              \
    ENTRY(KSOpenDoor, ())                                                                                             \
    ENTRY(KSSetVolume, ())                                                                                            \
    ENTRY(KSForwardIcom, ())                                                                                          \
    ENTRY(KSRetrieveIcom, ())                                                                                         \
    ENTRY(KSListenIcom, ())                                                                                           \
    ENTRY(KSDeleteServerCQ, ())                                                                                       \
    ENTRY(KSTransferAudio, ())                                                                                        \
    ENTRY(KSPlayTones, ())                                                                                            \
    ENTRY(KSSetMulticastFeatures, ())                                                                                 \
    ENTRY(KSResetConnection, ())                                                                                      \
    ENTRY(KSSayText, ())                                                                                              \
    ENTRY(KSResendSettings, (std::uint32_t handle))                                                                   \
    ENTRY(KSRTPStart, ())                                                                                             \
    ENTRY(KSRTPStartMicTo, ())                                                                                        \
    ENTRY(KSRTPStartSpeakerFrom, ())                                                                                  \
    ENTRY(KSRTPStop, ())                                                                                              \
    ENTRY(KSRTPStopMic, ())                                                                                           \
    ENTRY(KSRTPStopSpeaker, ())                                                                                       \
    ENTRY(KSSysVarCreateKey, (std::uint32_t handle, const char* path, std::uint32_t flags, std::uint32_t create))     \
    ENTRY(KSSysVarSubscribe, (std::uint32_t handle, const char* path, std::uint32_t, std::uint32_t one))              \
    ENTRY(KSSysVarSetValue, (std::uint32_t handle, const char* name, std::uint32_t type, const void* value,           \
                             std::uint32_t length))                                                                   \
    ENTRY(KSSysVarGetValue, ())                                                                                       \
    ENTRY(KSSysVarDeleteValue, ())                                                                                    \
    ENTRY(KSFileCreate, (std::uint32_t handle, KSGuid* created))                                                      \
    ENTRY(KSFileRead, (std::uint32_t handle, KSGuid file))                                                            \
    ENTRY(KSFileWrite, (std::uint32_t handle, KSGuid file, const void* bytes, std::uint32_t length))                  \
    ENTRY(KSFileDelete, (std::uint32_t handle, KSGuid file))                                                          \
    ENTRY(KSFileInfo, ())
// clang-format on
