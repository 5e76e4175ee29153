# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Says at once, and by name, when another yt-dlp no longer has what the adjustments rest on."""

import importlib
import inspect
from typing import Any

# (module, path of names inside it, names that the function must take)
_NEEDED: tuple[tuple[str, str, tuple[str, ...]], ...] = (
    ('globals', 'plugin_dirs.value', ()),
    ('cookies', 'load_cookies', ()),
    ('downloader', 'PROTOCOL_MAP', ()),
    ('downloader.common', 'FileDownloader._hook_progress', ('status', 'info_dict')),
    ('downloader.common', 'FileDownloader.report_progress', ('s',)),
    ('downloader.common', 'FileDownloader.report_retry', ('err', 'count', 'retries')),
    ('downloader.common', 'FileDownloader.temp_name', ('filename',)),
    ('downloader.common', 'FileDownloader.undo_temp_name', ('filename',)),
    ('downloader.common', 'FileDownloader.ytdl_filename', ('filename',)),
    ('downloader.common', 'FileDownloader.try_remove', ()),
    ('downloader.common', 'FileDownloader.add_progress_hook', ('ph',)),
    ('downloader.external', 'FFmpegFD.real_download', ('filename', 'info_dict')),
    ('downloader.external', 'FFmpegFD._call_downloader', ('tmpfilename', 'info_dict')),
    ('downloader.fragment', 'FragmentFD._write_ytdl_file', ('ctx',)),
    ('downloader.fragment', 'FragmentFD._prepare_frag_download', ('ctx',)),
    ('downloader.fragment', 'FragmentFD._append_fragment', ('ctx', 'frag_content')),
    ('downloader.fragment', 'FragmentFD.download_and_append_fragments',
     ('ctx', 'fragments', 'info_dict')),
    ('extractor.common', 'InfoExtractor.extract', ('url',)),
    ('extractor.common', 'InfoExtractor.ie_key', ()),
    ('extractor.common', 'UnsupportedURLIE', ()),
    ('networking', 'HEADRequest', ()),
    ('networking', 'Request', ()),
    ('networking.common', 'RequestHandler._make_sslcontext', ('legacy_ssl_support',)),
    ('networking.exceptions', 'HTTPError', ()),
    ('networking.exceptions', 'RequestError', ()),
    ('postprocessor.common', 'PostProcessor.report_progress', ('s',)),
    ('postprocessor.ffmpeg', 'FFmpegPostProcessor._determine_executables', ()),
    ('postprocessor.ffmpeg', 'FFmpegPostProcessor._ffmpeg_location.name', ()),
    ('postprocessor.ffmpeg', 'FFmpegEmbedSubtitlePP.run', ('info',)),
    ('postprocessor.movefilesafterdownload', 'MoveFilesAfterDownloadPP.run', ('info',)),
    ('utils', 'Popen.run', ()),
    ('utils', 'DownloadCancelled', ()),
    ('utils', 'DownloadError', ()),
    ('utils', 'PagedList', ()),
    ('utils', 'PostProcessingError', ()),
    ('utils', 'YoutubeDLError', ()),
    ('utils', 'determine_ext', ('url', 'default_ext')),
    ('utils', 'mimetype2ext', ('mt', 'default')),
    ('utils', 'prepend_extension', ()),
    ('utils', 'replace_extension', ()),
    ('utils', 'sanitize_filename', ('s',)),
    ('utils', 'sanitize_url', ('url',)),
    ('utils', 'subtitles_filename', ('filename', 'sub_lang', 'sub_format', 'expected_real_ext')),
    ('utils', 'urlhandle_detect_ext', ('url_handle', 'default')),
    ('utils', 'urljoin', ('base', 'path')),
    ('YoutubeDL', 'YoutubeDL.__init__', ('params', 'auto_init')),
    ('YoutubeDL', 'YoutubeDL._forceprint', ('key', 'info_dict')),
    ('YoutubeDL', 'YoutubeDL._format_fields', ()),
    ('YoutubeDL', 'YoutubeDL._outtmpl_expandpath', ('outtmpl',)),
    ('YoutubeDL', 'YoutubeDL._prepare_filename', ('info_dict', 'outtmpl', 'tmpl_type')),
    ('YoutubeDL', 'YoutubeDL._sanitize_thumbnails', ('info_dict',)),
    ('YoutubeDL', 'YoutubeDL._write_subtitles', ('info_dict', 'filename')),
    ('YoutubeDL', 'YoutubeDL._write_thumbnails',
     ('label', 'info_dict', 'filename', 'thumb_filename_base')),
    ('YoutubeDL', 'YoutubeDL.add_default_info_extractors', ()),
    ('YoutubeDL', 'YoutubeDL.add_info_extractor', ('ie',)),
    ('YoutubeDL', 'YoutubeDL.add_post_processor', ('pp', 'when')),
    ('YoutubeDL', 'YoutubeDL.cookiejar.func', ()),
    ('YoutubeDL', 'YoutubeDL.dl', ('name', 'info', 'subtitle', 'test')),
    ('YoutubeDL', 'YoutubeDL.download', ('url_list',)),
    ('YoutubeDL', 'YoutubeDL.existing_file', ('filepaths', 'default_overwrite')),
    ('YoutubeDL', 'YoutubeDL.extract_info', ('url', 'download')),
    ('YoutubeDL', 'YoutubeDL.get_output_path', ('dir_type', 'filename')),
    ('YoutubeDL', 'YoutubeDL.post_process', ('filename', 'info', 'files_to_move')),
    ('YoutubeDL', 'YoutubeDL.prepare_filename', ('info_dict', 'dir_type', 'outtmpl', 'warn')),
    ('YoutubeDL', 'YoutubeDL.process_info', ('info_dict',)),
    ('YoutubeDL', 'YoutubeDL.report_error', ('message',)),
    ('YoutubeDL', 'YoutubeDL.report_warning', ('message',)),
    ('YoutubeDL', 'YoutubeDL.sanitize_info', ('info_dict', 'remove_private_keys')),
    ('YoutubeDL', 'YoutubeDL.save_cookies', ()),
    ('YoutubeDL', 'YoutubeDL.to_stderr', ('message', 'only_once')),
    ('YoutubeDL', 'YoutubeDL.trouble', ('message', 'tb', 'is_error')),
    ('YoutubeDL', 'YoutubeDL.urlopen', ('req',)),
)

# Where the steps of apply_after_import() can be seen: module, owner, name.
_REPLACED = (
    ('downloader.common', 'FileDownloader', '_hook_progress'),
    ('downloader.external', 'FFmpegFD', '_call_downloader'),
    ('downloader.fragment', 'FragmentFD', '_append_fragment'),
    ('extractor.common', 'InfoExtractor', 'extract'),
    ('postprocessor.ffmpeg', 'FFmpegPostProcessor', '_determine_executables'),
    ('postprocessor.ffmpeg', 'FFmpegEmbedSubtitlePP', 'run'),
    ('postprocessor.movefilesafterdownload', 'MoveFilesAfterDownloadPP', 'run'),
    ('utils', 'Popen', '__init__'),
)


def require_names() -> None:
    """Raise RuntimeError with every name that is gone or takes other arguments."""
    moved = [f'{module}: {path}' for module, path, takes in _NEEDED
             if not _is_as_expected(module, path, takes)]
    if moved:
        raise RuntimeError(f'this yt-dlp does not fit the program: {"; ".join(moved)}')


def require_steps() -> None:
    """Raise RuntimeError where an adjustment is not in place."""
    import yt_dlp
    from yt_dlp.postprocessor.ffmpeg import FFmpegPostProcessor

    from . import native_process, patching, youtube_dl

    missing = [f'{module}: {owner}.{name}' for module, owner, name in _REPLACED
               if not patching.is_replaced(_found(module, owner), name)]
    if yt_dlp.YoutubeDL is not youtube_dl.SavingYoutubeDL:
        missing.append('YoutubeDL')
    if FFmpegPostProcessor().executable != native_process.FFMPEG:
        missing.append('ffmpeg in process')
    if missing:
        raise RuntimeError(f'yt-dlp could not be adjusted: {"; ".join(missing)}')


def _is_as_expected(module: str, path: str, takes: tuple[str, ...]) -> bool:
    try:
        found = _found(module, path)
        return not takes or set(takes) <= set(inspect.signature(found).parameters)
    except (ImportError, AttributeError, TypeError, ValueError):
        return False


def _found(module: str, path: str) -> Any:
    found = importlib.import_module(f'yt_dlp.{module}')
    for name in path.split('.'):
        found = getattr(found, name)
    return found
