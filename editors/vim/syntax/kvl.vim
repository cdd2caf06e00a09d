" Main scripts and scripts of KVL. Text outside commands goes nowhere and is shown as a comment; in patterns, which share
" the rest of this file, it is the text to be written.
if exists('b:current_syntax')
  finish
endif
syntax case match
syntax sync minlines=200

if !exists('b:kvl_text_is_written')
  syntax match kvlText /[^$]\+/
endif

" A command: from one dollar sign to the next, on one line. What is defined later is tried first.
syntax region kvlCommand matchgroup=kvlDollar start=/\$/ end=/\$/ end=/$/ oneline keepend
      \ contains=kvlName,kvlCall,kvlMethod,kvlBuiltIn,kvlType,kvlBasicType,kvlKeyword,kvlBlock,kvlReserved,kvlBoolean,
      \kvlNumber,kvlOperator,kvlMark,kvlString
syntax match kvlIllegal /\$\ze\%(\s\|$\)/
syntax match kvlMarkerLine /^\$[^\x21-\x7E]*$/
syntax match kvlTwoDollars /\$\$/
syntax region kvlComment start=/\$\/\*/ end=/\*\_s*\/\_s*\$/ contains=@Spell
syntax region kvlComment start=/\$BEGIN\s\+COMMENT\s*\$/ end=/\$\_s*E\_s*N\_s*D\_s*C\_s*O\_s*M\_s*M\_s*E\_s*N\_s*T\_s*\$/ contains=@Spell

syntax match kvlOperator /[-+*\/%=!<>]=\|[=<>!#&]/ contained
syntax match kvlMark /\\n\|\// contained
syntax match kvlNumber /[+-]\=\<\d\+[uUlL]*\>\|\%(\d\+\.\d*\|\.\d\+\)\%([eE][+-]\=\d\+\)\=[fFlL]\=\|\<\d\+[eE][+-]\=\d\+[fFlL]\=\>/
      \ contained
syntax match kvlName /:\=\<\h\w*\%(:\%(\~\|\h\w*\)\)*\|:\~\%(:\%(\~\|\h\w*\)\)*/ contained
syntax match kvlCall /:\=\<\h\w*\%(:\%(\~\|\h\w*\)\)*\ze\s*(/ contained
syntax match kvlMethod /\%(\<\h\w*\|:\~\)\%(:\%(\~\|\h\w*\)\)*:\%(FILE\|SET_PATH\|MKDIR\)\ze\s*(/ contained contains=kvlMethodName
syntax match kvlMethodName /:\zs\%(FILE\|SET_PATH\|MKDIR\)\ze\s*(/ contained
syntax match kvlBuiltIn /\<KVL:GENERATION:\%(USER_INPUT\|VERSION_NUMBER\|BUILD_NUMBER\|DATE\|TIME\|GUID\)\>/ contained
syntax match kvlBuiltIn /\<KVL:LIST:\%(REVERSE\|SORT\|UNIFY\|EMPTY\)\>/ contained
syntax match kvlBuiltIn /\<KVL:STREAM:\%(MERGE\|REPLACE2\=\|DELETE\|CLEAR\|UPPERCASE\|LOWERCASE\|LEFT\|RIGHT\|LENGTH\)_STREAM\>/ contained
syntax match kvlBuiltIn /\<KVL:DIRECTORY:MKDIR\>\|\<DUMP\>\ze\s*(/ contained
" A word with a colon behind it is a name, whatever the word.
syntax match kvlBoolean /:\@1<!\<\%(TRUE\|FALSE\)\>:\@!/ contained
syntax match kvlKeyword /:\@1<!\<\%(ALL\|IF\|CHANGE\|EXTEND\|SEPARATOR\|COMMENT\|SCRIPT\|PATTERN\|KVL\|VERSION\)\>:\@!/ contained
syntax match kvlBlock /:\@1<!\<\%(BEGIN\|END\)\>:\@!/ contained
syntax match kvlReserved /:\@1<!\<\%(SET\|GET\)\>:\@!/ contained
syntax match kvlType /::\s*\h\w*\%(:\%(\~\|\h\w*\)\)*/ contained
syntax match kvlBasicType /::\s*KVL:\%(DIRECTORY\|TYPE\|PATTERN\|SCRIPT\|FILE\|STREAM\|STRING\|INTEGER\|FLOAT\|BOOL\)\>/ contained
syntax match kvlBasicType
      \ /::\s*\%(STREAM\|STRING\|INTEGER\|FLOAT\|BOOL\|IDENTIFIER\|WHITESPACES\=\|SEQUENCE\|NESTED\|LIST\|CHOICE\|PERMUTATION\|DISTANCE\|OPTION\|LINE\)\>:\@!/
      \ contained
" Placeholders in a literal are filled in when it is used.
syntax region kvlString start=/"/ skip=/""/ end=/"/ end=/$/ oneline contained extend contains=kvlEscape,kvlPlaceholder
syntax match kvlEscape /\\[nrtvbfa'?\\]\|""\|\$\$/ contained
syntax match kvlPlaceholder /\$[[:alpha:]_:\\\/][^$"]*\$/ contained

highlight default link kvlText Comment
highlight default link kvlComment Comment
highlight default link kvlMarkerLine Comment
highlight default link kvlDollar Delimiter
highlight default link kvlTwoDollars SpecialChar
highlight default link kvlIllegal Error
highlight default link kvlReserved Error
highlight default link kvlOperator Operator
highlight default link kvlMark SpecialChar
highlight default link kvlNumber Number
highlight default link kvlBoolean Boolean
highlight default link kvlName Identifier
highlight default link kvlMethod Identifier
highlight default link kvlMethodName Function
highlight default link kvlCall Function
highlight default link kvlBuiltIn Function
highlight default link kvlKeyword Keyword
highlight default link kvlBlock Statement
highlight default link kvlType Type
highlight default link kvlBasicType Type
highlight default link kvlString String
highlight default link kvlEscape SpecialChar
highlight default link kvlPlaceholder Special

let b:current_syntax = 'kvl'
