# What the bundle of a build holds beside the executables: our Python modules with their byte
# code, and links to what tools/setup/setup fetched.

set(VELTRO_VENDOR_DIR "${PROJECT_SOURCE_DIR}/build/vendor" CACHE PATH
    "What tools/setup/setup fetched")

# The product's pages, which the window leads to where there are any.
set(VELTRO_SUPPORT_PAGE "https://veltro.app/support" CACHE STRING "Address of the support page, or nothing")
set(VELTRO_PRIVACY_PAGE "https://veltro.app/privacy" CACHE STRING "Address of the privacy policy, or nothing")
set(VELTRO_NOTICES_PAGE "https://veltro.app/notices" CACHE STRING "Address of the open-source notices, or nothing")

# Looks at every part on each build, which takes a tenth of a second, and mends what is missing
# or has changed; a rule with outputs would not notice a removed file.
add_custom_target(veltro_bundle ALL
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/stage_bundle" --link
        --vendor "${VELTRO_VENDOR_DIR}"
        --version "${PROJECT_VERSION}"
        --support-page "${VELTRO_SUPPORT_PAGE}"
        --privacy-page "${VELTRO_PRIVACY_PAGE}"
        --notices-page "${VELTRO_NOTICES_PAGE}"
        "${VELTRO_BUNDLE_DIR}"
    COMMENT "Completing the bundle"
    VERBATIM)
