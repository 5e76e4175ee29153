# What the bundle of a build holds beside the executables: our Python modules with their byte
# code, and links to what tools/setup/setup fetched.

set(VELTRO_VENDOR_DIR "${PROJECT_SOURCE_DIR}/build/vendor" CACHE PATH
    "What tools/setup/setup fetched")

# Looks at every part on each build, which takes a tenth of a second, and mends what is missing
# or has changed; a rule with outputs would not notice a removed file.
add_custom_target(veltro_bundle ALL
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/stage_bundle" --link
        --vendor "${VELTRO_VENDOR_DIR}"
        --version "${PROJECT_VERSION}"
        "${VELTRO_BUNDLE_DIR}"
    COMMENT "Completing the bundle"
    VERBATIM)
