" Scripts and patterns of KVL.
if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1

setlocal commentstring=$/*\ %s\ */$
setlocal matchpairs=(:),[:]
setlocal iskeyword=@,48-57,_
" With matchit, % jumps between the begin and the end of a block.
let b:match_words = '\$BEGIN\>\s\+\(\w\+\)[^$]*\$:\$END\>\s\+\1[^$]*\$'

let b:undo_ftplugin = 'setlocal commentstring< matchpairs< iskeyword< | unlet! b:match_words'
