runtime! ftplugin/kvl.vim
