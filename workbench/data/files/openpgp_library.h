// OpenPgpLibrary: the functions of librnp that the workbench calls, in a table.
//
// The library is loaded when the first protected file is met: few runs need it, and what it needs itself takes its time
// to load. It is looked for as the system finds libraries, and stays loaded.
#pragma once

#include <rnp/rnp.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

#define WORKBENCH_RNP_FUNCTIONS(ROW)     \
  ROW(rnp_buffer_destroy)                \
  ROW(rnp_ffi_create)                    \
  ROW(rnp_ffi_destroy)                   \
  ROW(rnp_ffi_set_pass_provider)         \
  ROW(rnp_input_destroy)                 \
  ROW(rnp_input_from_callback)           \
  ROW(rnp_op_encrypt_add_password)       \
  ROW(rnp_op_encrypt_create)             \
  ROW(rnp_op_encrypt_destroy)            \
  ROW(rnp_op_encrypt_execute)            \
  ROW(rnp_op_encrypt_set_aead)           \
  ROW(rnp_op_encrypt_set_cipher)         \
  ROW(rnp_op_encrypt_set_compression)    \
  ROW(rnp_op_verify_create)              \
  ROW(rnp_op_verify_destroy)             \
  ROW(rnp_op_verify_execute)             \
  ROW(rnp_op_verify_get_protection_info) \
  ROW(rnp_op_verify_get_recipient_count) \
  ROW(rnp_op_verify_get_symenc_count)    \
  ROW(rnp_op_verify_set_flags)           \
  ROW(rnp_output_destroy)                \
  ROW(rnp_output_to_callback)            \
  ROW(rnp_result_to_string)

struct OpenPgpLibrary {
#define WORKBENCH_RNP_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_RNP_FUNCTIONS(WORKBENCH_RNP_MEMBER)
#undef WORKBENCH_RNP_MEMBER
};

// The library, loaded at the first call. May be called on any thread.
Outcome<const OpenPgpLibrary*> openPgpLibrary();

// While one lives, the library writes nothing to standard error: it tells there of every message that it refuses, in
// its own terms, and knows of no way to leave that off. What C's standard error gets from others meanwhile is lost too.
// Only one thread has one at a time; others wait.
class OpenPgpSilence {
 public:
  OpenPgpSilence();
  OpenPgpSilence(const OpenPgpSilence&) = delete;
  OpenPgpSilence& operator=(const OpenPgpSilence&) = delete;
  ~OpenPgpSilence();
};

}  // namespace workbench::data
