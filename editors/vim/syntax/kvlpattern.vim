" Patterns of KVL: text to be written, with commands between dollar signs.
if exists('b:current_syntax')
  finish
endif
let b:kvl_text_is_written = 1
runtime! syntax/kvl.vim
unlet b:kvl_text_is_written
let b:current_syntax = 'kvlpattern'
